// What import and export both know of an AAF file: properties that have no operation of
// their own, and what a file tells of itself for the report.
#pragma once

#include "aafobj/api/aaf_interfaces.h"

class CAAFLogger;

namespace aaf {

inline constexpr aafUID_t operational_pattern_property = {
    0x01020203, 0x0000, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05}};
inline constexpr aafUID_t edit_protocol_pattern = {
    0x0d011201, 0x0100, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x05}};
inline constexpr aafUID_t usage_code_property = {
    0x05010108, 0x0000, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x07}};
// Of a slot.
inline constexpr aafUID_t mark_in_property = {
    0x07020103, 0x010c, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x07}};
inline constexpr aafUID_t mark_out_property = {
    0x07020103, 0x0203, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x07}};

// Into the report, each by itself: when the file was modified, and its revision; of its
// last identification, when that was made, and with what. What is missing stays as it is.
void report_file(IAAFHeader& header, CAAFLogger& report);
void report_identification(IAAFIdentification& last, CAAFLogger& report);

}  // namespace aaf
