#pragma once

#include <string_view>
#include <vector>

#include "gps/fix.h"

// NMEA 0183: one sentence into one record. `GpsFix::parseSentence` folds it into the live fix.
namespace vgps {

// Cuts a sentence at every comma. Field 0 is its name ("$GPRMC"); a checksum stays at the end of
// the last field. `fields` is overwritten; the views look into `sentence`.
void splitFields(std::string_view sentence, std::vector<std::string_view>& fields);

// An angle as receivers write it, ddmm.mmmm or dddmm.mmmm: the minutes start two characters before
// the point and are held as a 32-bit float; without a point the angle is 0. Each output may be
// null: thousandths of a second of arc, rounded toward zero, and decimal degrees. No sign: the
// hemisphere stands in another field.
void ddmmToDegrees(std::string_view field, int32_t* milliseconds, double* degrees);

// The exclusive-or of the characters between the first one ("$") and the "*".
uint8_t nmeaChecksum(std::string_view sentence);

enum class Checksum { right, wrong, absent };

// Compares the checksum that a sentence carries; nothing is accepted or refused by it.
Checksum checkNmeaChecksum(std::string_view sentence);

}  // namespace vgps
