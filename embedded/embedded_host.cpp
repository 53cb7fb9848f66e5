#include "embedded/embedded_host.h"

#include "embedded/code_pages.h"

namespace embedded {

EmbeddedHost::EmbeddedHost(EmbeddedOptions options, int input, int output)
    : options_(std::move(options)),
      terminal_(input, output),
      code_page_(make_code_page(options_.code_page)) {
  if (code_page_ == nullptr) code_page_ = make_code_page("windows-1252");
}

EmbeddedHost::~EmbeddedHost() = default;

}  // namespace embedded
