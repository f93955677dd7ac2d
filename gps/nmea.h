#pragma once

#include <string_view>
#include <vector>

#include "gps/fix.h"
#include "gps/satellite_sentences.h"
#include "gps/sentence.h"

// NMEA 0183: a recognized sentence into a record, and the record into the live fix.
namespace vgps {

struct GpsFix;
struct GpsState;

// Fills the record with what the sentence says and returns what it vouches for, `Said` bits. The
// greatest speed and altitude are noted here, whether the record is applied or not.
uint32_t parseRecord(const DecodedSentence& decoded, GpsState& state, NmeaSentence& out);

// Stores what was said in the fix.
void applyRecord(const DecodedSentence& decoded, const NmeaSentence& record, uint32_t said,
                 GpsFix& fix);

// Cuts a sentence at every comma. Field 0 is its name ("$GPRMC"); a checksum stays at the end of
// the last field. `fields` is overwritten; the views look into `sentence`.
void splitFields(std::string_view sentence, std::vector<std::string_view>& fields);

// An angle as receivers write it, ddmm.mmmm or dddmm.mmmm: the minutes start two characters before
// the point and are held as a 32-bit float; without a point the angle is 0. Each output may be
// null: thousandths of a second of arc, rounded toward zero, and decimal degrees. No sign: the
// hemisphere stands in another field.
void ddmmToDegrees(std::string_view field, int32_t* milliseconds, double* degrees);

}  // namespace vgps
