#ifndef DFDL_PARSERS_PLAINTEXTVALUE_H
#define DFDL_PARSERS_PLAINTEXTVALUE_H

#include <cstdint>
#include <span>
#include <string_view>

struct GroupMemberTableRow;
struct ParserRegionHandler;
struct PlainValue;

// An element whose value is a number or calendar, as the short roads read it: without ICU, and without
// looking at its rows again for each value. A plain value, part of what is planned of the element.
struct PlainTextValue {
    const GroupMemberTableRow* row;  // null: the element is another
    int32_t formatSlot;              // where the handler keeps the format that the row has
    bool isCalendar;
};

PlainTextValue PlainTextValue_of(const GroupMemberTableRow& row);
// The value of a text without its padding. Bytes are those of an encoding that keeps ASCII, and up to
// `loaded` of them may be looked at, be they text or what stands behind it. Both are false, with nothing
// raised, if the region handler has to read the text, or to say what is wrong with it.
bool PlainTextValue_readBytes(const PlainTextValue* this_, ParserRegionHandler* handler,
                              std::span<const uint8_t> text, int64_t loaded, PlainValue* value);
bool PlainTextValue_read(const PlainTextValue* this_, ParserRegionHandler* handler, std::u16string_view text,
                         PlainValue* value);

#endif
