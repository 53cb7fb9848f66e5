#include "aaf/export_definitions.h"

#include "aafobj/api/aaf_well_known_ids.h"

namespace aaf {

namespace {

struct ParameterRow {
  aafUID_t id;
  const aafCharacter* name;
  const aafCharacter* description;
};

// By Parameter.
constexpr ParameterRow parameter_rows[] = {
    {kAAFParameterDef_Amplitude, L"Level",
     L"Level, Audio level of assoc. source clip as rational multiplier. "
     L"20*log10( level ) = dBlevel"},
    {kAAFParameterDef_Pan, L"Pan Level",
     L"Specifies the position in the stereo sound field. 0 is left, 1 is right. 1/2 is midpoint"},
    {kAAFParameterDef_Level, L"Level",
     L"Level, equal to mix ratio of B/A. Range is 0 to 1. "
     L"The formula  P = (Level*B)+((1-Level)*A)"},
    {kAAFParameterDef_Level, L"Level", L"Outgoing Level. Range is 0 to 1."},
    {{0x9e610007, 0x1be2, 0x41e1, {0xbb, 0x11, 0xc9, 0x5d, 0xe9, 0x96, 0x4d, 0x03}},
     L"Level",
     L"Outgoing Level. Range is 0 to 1."},
    {{0x48cea642, 0xa8f9, 0x455b, {0x82, 0xb3, 0x86, 0xc8, 0x14, 0xb7, 0x97, 0xc7}},
     L"Level",
     L"Incoming Level. Range is 0 to 1."},
};

struct OperationRow {
  aafUID_t id;
  const aafCharacter* name;
  const aafCharacter* description;
  aafInt32 inputs;
  Parameter first;
  // Parameter::count for none.
  Parameter second;
};

// By Operation.
constexpr OperationRow operation_rows[] = {
    {kAAFOperationDef_MonoAudioGain, L"Audio Gain",
     L"Specifies fixed audio gain of source clip. 20*log10( level ) = dBlevel", 1, Parameter::gain,
     Parameter::count},
    {kAAFOperationDef_MonoAudioGain, L"Audio Gain",
     L"Specifies varying audio gain of source clip. 20*log10( level ) = dBlevel", 1,
     Parameter::gain, Parameter::count},
    {kAAFOperationDef_MonoAudioPan, L"Audio Pan",
     L"Specifies varying audio stereo panning of mono essence track. 0 is left. 1 is right. "
     L"1/2 is half left, half right",
     1, Parameter::pan, Parameter::count},
    {kAAFOperationDef_MonoAudioDissolve, L"Mono Audio Dissolve", L"Combines two mono audio streams",
     2, Parameter::level, Parameter::count},
    {kAAFOperationDef_TwoParameterMonoAudioDissolve, L"Mono Audio Dissolve",
     L"Combines two mono audio streams", 2, Parameter::outgoing, Parameter::incoming},
};

constexpr aafUID_t rational_type = {
    0x03010100, 0x0000, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x04, 0x01, 0x01}};

template <class Row>
const Row& row_of(const Row* rows, auto which) {
  return rows[static_cast<std::size_t>(which)];
}

}  // namespace

IAAFOperationDef* ExportDefinitions::operation(Operation which) {
  AafRef<IAAFOperationDef>& known = m_operations[static_cast<std::size_t>(which)];
  if (known) return known.get();
  const aafUID_t& id = row_of(operation_rows, which).id;
  if (m_factory.dictionary()->LookupOperationDef(id, known.put()) != 0 || !known) {
    known = register_operation(which);
  }
  return known.get();
}

IAAFParameterDef* ExportDefinitions::parameter(Parameter which) {
  AafRef<IAAFParameterDef>& known = m_parameters[static_cast<std::size_t>(which)];
  if (known) return known.get();
  const aafUID_t& id = row_of(parameter_rows, which).id;
  if (m_factory.dictionary()->LookupParameterDef(id, known.put()) != 0 || !known) {
    known = register_parameter(which);
  }
  return known.get();
}

IAAFInterpolationDef* ExportDefinitions::linear() {
  if (m_linear) return m_linear.get();
  if (m_factory.dictionary()->LookupInterpolationDef(kAAFInterpolationDef_Linear, m_linear.put()) !=
          0 ||
      !m_linear) {
    m_linear = register_linear();
  }
  return m_linear.get();
}

AafRef<IAAFOperationDef> ExportDefinitions::register_operation(Operation which) {
  const OperationRow& row = row_of(operation_rows, which);
  AafRef<IAAFOperationDef> made = AAF_MAKE(m_factory, OperationDef);
  if (!made || made->Initialize(row.id, row.name, row.description) != 0 ||
      made->SetDataDef(m_factory.sound()) != 0 || made->SetIsTimeWarp(0) != 0 ||
      made->SetNumberInputs(row.inputs) != 0 ||
      m_factory.dictionary()->RegisterOperationDef(made.get()) != 0)
    return {};
  for (const Parameter used : {row.first, row.second}) {
    if (used == Parameter::count) continue;
    IAAFParameterDef* const definition = parameter(used);
    if (definition == nullptr || made->AddParameterDef(definition) != 0) return {};
  }
  return made;
}

AafRef<IAAFParameterDef> ExportDefinitions::register_parameter(Parameter which) {
  const ParameterRow& row = row_of(parameter_rows, which);
  AafRef<IAAFParameterDef> made = AAF_MAKE(m_factory, ParameterDef);
  AafRef<IAAFTypeDef> rational;
  if (!made || m_factory.dictionary()->LookupTypeDef(rational_type, rational.put()) != 0 ||
      made->Initialize(row.id, row.name, row.description, rational.get()) != 0 ||
      made->SetDisplayUnits(L" ") != 0 ||
      m_factory.dictionary()->RegisterParameterDef(made.get()) != 0)
    return {};
  return made;
}

AafRef<IAAFInterpolationDef> ExportDefinitions::register_linear() {
  AafRef<IAAFInterpolationDef> made = AAF_MAKE(m_factory, InterpolationDef);
  if (!made ||
      made->Initialize(kAAFInterpolationDef_Linear, L"LinearInterp", L"Linear interpolation") !=
          0 ||
      m_factory.dictionary()->RegisterInterpolationDef(made.get()) != 0)
    return {};
  return made;
}

}  // namespace aaf
