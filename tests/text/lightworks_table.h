// Files of the Lightworks table, as texts.
#pragma once

#include <string>

namespace support {

inline const std::string lightworks_head =
    "\"OLEDB:Rev 1\"\n"
    "\"EDLGEN:Rev 4\"\n"
    "\"variant:us_film\"\n"
    "\"edit_cookie:INVALID\"\n"
    "\"project_name:INVALID\"\n"
    "\"edit_name:marlo\"\n"
    "\"modification_time:896478818\"\n"
    "\"edit_date:14:53, 29 May 1998\"\n"
    "\"edit label_std:P\"\n"
    "\"OLEDB\"\n"
    "\"3\",\"12\",\"12\",\"32\",\"3\",\"12\",\"12\",\"6\",\"6\",\"6\",\"2\",\"8\",\"8\",\"20\","
    "\"24\",\"128\"\n"
    "\"text\",\"text\",\"text\",\"text\",\"text\",\"text\",\"text\",\"text\",\"text\",\"text\","
    "\"text\",\"text\",\"text\",\"text\",\"text\",\"text\"\n"
    "\"edit_channel\",\"edit_in\",\"edit_out\",\"src_reelid\",\"src_channel\",\"src_in\","
    "\"src_out\",\"src_standard\",\"level_in\",\"level_out\",\"fx_op\",\"src_index\","
    "\"ref_index\",\"name\",\"scene\",\"description\"\n";

// A line of the table; the fields not named are those of a plain second of "R".
struct TableLine {
  std::string edit_channel = "A01";
  std::string edit_in = "00000.000000";
  std::string edit_out = "00001.000000";
  std::string reel = "R";
  std::string source_channel = "A01";
  std::string source_in = "00000.000000";
  std::string source_out = "00001.000000";
  std::string standard = "PR25.0";
  std::string level_in = "01.000";
  std::string level_out = "01.000";
  std::string code = "CT";
  std::string index = {};
  std::string name = {};

  [[nodiscard]] std::string text() const {
    std::string line;
    for (const std::string* column :
         {&edit_channel, &edit_in, &edit_out, &reel, &source_channel, &source_in, &source_out,
          &standard, &level_in, &level_out, &code, &index, &index, &name}) {
      line += "\"" + *column + "\",";
    }
    return line + "\"\",\"\"\n";
  }
};

}  // namespace support
