#include "host/viewer.h"

#include <algorithm>
#include <iterator>

namespace {

struct Refusal {
  int answer;
  const wide_char* text;
};

constexpr Refusal refusals[] = {
    {0, u"The operating system is out of memory or resources. "},
    {2, u"The specified file was not found."},
    {3, u"The specified path was not found."},
    {5, u"The operating system denied access to the specified file."},
    {8, u"There was not enough memory to complete the operation. "},
    {11, u"The .exe file is invalid (non-Win32\u00AE .exe or error in .exe image)."},
    {26, u"A sharing violation occurred."},
    {27, u"The file name association is incomplete or invalid."},
    {28, u"The DDE transaction could not be completed because the request timed out."},
    {29, u"The DDE transaction failed."},
    {30,
     u"The DDE transaction could not be completed because other DDE transactions were being "
     u"processed."},
    {31, u"There is no application associated with the given file name extension."},
    {32, u"The specified dynamic-link library was not found."},
};

}  // namespace

const wide_char* viewer_refusal(int answer) {
  const auto* const refusal =
      std::find_if(std::begin(refusals), std::end(refusals),
                   [answer](const Refusal& row) { return row.answer == answer; });
  return refusal == std::end(refusals) ? nullptr : refusal->text;
}
