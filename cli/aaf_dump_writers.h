// The tree of an AAF file as text for a person or as one JSON object. Both write as they
// are told, so that memory does not grow with the file.
#pragma once

#include <cstddef>
#include <memory>

#include "aaf/aaf_tree.h"

namespace cli {

class DumpWriter : public aaf::TreeSink {
 public:
  // Writes what is still held. False, with the reason told, when the system refused any
  // of it.
  [[nodiscard]] virtual bool finish() = 0;
  // How many values could not be read.
  [[nodiscard]] std::size_t faults() const { return faults_; }

 protected:
  std::size_t faults_ = 0;
};

std::unique_ptr<DumpWriter> make_text_dump_writer();
std::unique_ptr<DumpWriter> make_json_dump_writer();

}  // namespace cli
