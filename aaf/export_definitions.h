// The definitions that an exported composition names: looked up in the file, and
// registered there when it lacks them.
#pragma once

#include <array>
#include <cstddef>

#include "aaf/export_objects.h"

namespace aaf {

enum class Operation { gain_fixed, gain_varying, pan, dissolve, two_level_dissolve, count };
// `fade_level` is the dissolve's level as a single fade makes it.
enum class Parameter { gain, pan, level, fade_level, outgoing, incoming, count };

class ExportDefinitions {
 public:
  explicit ExportDefinitions(ObjectFactory& factory) : m_factory(factory) {}

  // Null on failure. They live as long as this object.
  [[nodiscard]] IAAFOperationDef* operation(Operation which);
  [[nodiscard]] IAAFParameterDef* parameter(Parameter which);
  [[nodiscard]] IAAFInterpolationDef* linear();

 private:
  [[nodiscard]] AafRef<IAAFOperationDef> register_operation(Operation which);
  [[nodiscard]] AafRef<IAAFParameterDef> register_parameter(Parameter which);
  [[nodiscard]] AafRef<IAAFInterpolationDef> register_linear();

  ObjectFactory& m_factory;
  std::array<AafRef<IAAFOperationDef>, static_cast<std::size_t>(Operation::count)> m_operations;
  std::array<AafRef<IAAFParameterDef>, static_cast<std::size_t>(Parameter::count)> m_parameters;
  AafRef<IAAFInterpolationDef> m_linear;
};

}  // namespace aaf
