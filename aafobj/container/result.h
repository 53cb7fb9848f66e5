#pragma once

#include <cstdint>

namespace aafobj {

/// What an operation of this layer came to. Everything but `ok` is a failure.
enum class [[nodiscard]] Result : std::uint8_t{
    ok,
    invalid_argument,  ///< a null or meaningless argument, an id that names nothing
    bad_name,          ///< not 1 to 31 UTF-16 units, or holds a NUL
    not_found,         ///< no such file or element
    already_exists,    ///< the file or element is there already
    wrong_type,        ///< a stream where a storage was asked for, or the other way round
    read_only,         ///< a change was asked of a file opened for reading
    closed,            ///< the file of this handle is closed, or its stream was removed
    not_aaf,           ///< not recognised: no AAF file signature
    unsupported,       ///< recognised, but of a form that no known writer makes
    damaged,           ///< a structure contradicts itself: loop, bad number, broken chain
    overlapping,       ///< two chains claim the same sector
    truncated,         ///< a chain leads past the end of the file
    too_large,         ///< past the limit of the file kind or of the caller
    no_space,          ///< the disk is full
    access_denied,     ///< the system forbids it
    io_error,          ///< the storage failed in any other way
};

/// A short English text for logs, never null.
const char* result_text(Result result);

}  // namespace aafobj
