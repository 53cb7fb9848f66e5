// What a test sets and sees of the library of faulty files (faulty_library.cpp), which it
// gets by name: static_cast<FaultyLibrary*(*)()>(entry "faulty_library").
//
// Whatever path is opened holds one composition with a filler of 10 units, two marks, and
// the audio of `audio`.
#pragma once

#include <cstdint>
#include <vector>

struct FaultyLibrary {
  enum class Thrown { standard, number, own, memory };
  struct Audio {
    // What is said of it, and what is there. Bytes.
    std::int64_t size;
    std::int64_t held;
  };

  // Of all calls of its interfaces, from 1, the one that throws; 0 for none.
  long throw_at = 0;
  Thrown thrown = Thrown::standard;
  std::vector<Audio> audio{};
  // Of the numbers that the marks are. Bytes.
  std::uint32_t mark_size = 8;
  // Slots that the composition says it has; it has one.
  std::uint32_t slot_count = 1;
  // The room that texts of the maker are said to need, all of which they fill. Bytes.
  std::uint32_t text_bytes = 8;
  // Source mobs tell the form of their audio.
  bool described = true;

  long calls = 0;
  // Files opened, calls of their Close, and objects that somebody holds.
  long opened = 0;
  long closed = 0;
  long (*objects)() = nullptr;
};
