#pragma once

#include <string_view>
#include <vector>

#include "gps/fix.h"
#include "gps/satellite_sentences.h"
#include "gps/sentence.h"

// Parses NMEA 0183: turns a recognized sentence into a record, and applies the record to the live
// fix.
namespace vgps {

struct GpsFix;
struct GpsState;

// Parses the sentence into the record and returns which values it reported, as `Said` bits. Updates
// the maximum speed and altitude, whether the record is applied or not.
uint32_t parseRecord(const DecodedSentence& decoded, GpsState& state, NmeaSentence& out);

// Stores the reported values in the fix.
void applyRecord(const DecodedSentence& decoded, const NmeaSentence& record, uint32_t said,
                 GpsFix& fix);

// Splits a sentence at every comma. Field 0 is its name ("$GPRMC"); a checksum stays at the end of
// the last field. Overwrites `fields`; the views refer to `sentence`.
void splitFields(std::string_view sentence, std::vector<std::string_view>& fields);

// Parses an angle, ddmm.mmmm or dddmm.mmmm: the minutes start two characters before the point and
// are stored as a 32-bit float; without a point the angle is 0. Each output may be null:
// thousandths of an arc second, truncated, and decimal degrees. There is no sign, because the
// hemisphere is in another field.
void ddmmToDegrees(std::string_view field, int32_t* milliseconds, double* degrees);

}  // namespace vgps
