#include "eventwriter.h"

#include <cmath>
#include <string_view>
#include <type_traits>

#include "doccallbacks.h"
#include "text.h"

namespace {

constexpr char LOWER_HEX[] = "0123456789abcdef";

void appendUnicodeEscape(std::string& out, char32_t unit) {
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) out += LOWER_HEX[unit >> shift & 15];
}

void appendJsonCharacter(std::string& out, char32_t c) {
    switch (c) {
        case '"':
            out += "\\\"";
            return;
        case '\\':
            out += "\\\\";
            return;
        case '\b':
            out += "\\b";
            return;
        case '\f':
            out += "\\f";
            return;
        case '\n':
            out += "\\n";
            return;
        case '\r':
            out += "\\r";
            return;
        case '\t':
            out += "\\t";
            return;
        default:
            break;
    }
    if (c < 0x20 || isSurrogate(c)) {
        appendUnicodeEscape(out, c);
    } else {
        appendUtf8(out, c);
    }
}

// One line under construction: `{"event":"..."`, members, `}`.
struct Line {
    explicit Line(EventWriter* writer, std::string_view event) : output(writer->out), text(output->text) {
        text += "{\"event\":\"";
        text += event;
        text += '"';
    }
    ~Line() {
        text += "}\n";
        Output_endLine(output);
    }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    Line& name(std::string_view member) {
        text += ",\"";
        text += member;
        text += "\":";
        return *this;
    }
    Line& add(std::string_view member, const DFDLChar* value) {
        name(member);
        appendJsonString(text, viewOf(value));
        return *this;
    }
    Line& add(std::string_view member, int64_t value) {
        name(member);
        appendNumber(text, value);
        return *this;
    }
    Line& quoted(std::string_view member, std::string_view plain) {
        name(member);
        text += '"';
        text += plain;
        text += '"';
        return *this;
    }

    Output* output;
    std::string& text;
};

EventWriter* of(const DFDLDocHandler* handler) {
    return static_cast<EventWriter*>(DFDLDocHandler_getContextObject(handler));
}
EventWriter* of(const DFDLRegionHandler* handler) {
    return static_cast<EventWriter*>(DFDLRegionHandler_getContextObject(handler));
}
EventWriter* of(const DFDLErrorHandler* handler) {
    return static_cast<EventWriter*>(DFDLErrorHandler_getContextObject(handler));
}

// ---- document -------------------------------------------------------------------------------------------

// A line that ends with the member "value", for the caller to write.
struct ValueLine : Line {
    ValueLine(DFDLDocHandler* handler, std::string_view call, uint32_t type) : Line(of(handler), "value") {
        quoted("call", call).add("type", static_cast<int64_t>(type)).name("value");
    }
};

template <class Number>
void appendJsonNumber(std::string& out, Number value) {
    if constexpr (std::is_floating_point_v<Number>) {
        const bool quotes = !std::isfinite(value);
        if (quotes) out += '"';
        appendNumber(out, value);
        if (quotes) out += '"';
    } else {
        appendNumber(out,
                     static_cast<std::conditional_t<std::is_signed_v<Number>, int64_t, uint64_t>>(value));
    }
}

// The callback that a kind of number arrives by.
template <class Number>
constexpr std::string_view CALL;
template <>
constexpr std::string_view CALL<int32_t> = "elementIntValue";
template <>
constexpr std::string_view CALL<int64_t> = "elementLongValue";
template <>
constexpr std::string_view CALL<int16_t> = "elementShortValue";
template <>
constexpr std::string_view CALL<int8_t> = "elementByteValue";
template <>
constexpr std::string_view CALL<uint32_t> = "elementUIntValue";
template <>
constexpr std::string_view CALL<uint64_t> = "elementULongValue";
template <>
constexpr std::string_view CALL<uint16_t> = "elementUShortValue";
template <>
constexpr std::string_view CALL<uint8_t> = "elementUByteValue";
template <>
constexpr std::string_view CALL<float> = "elementFloatValue";
template <>
constexpr std::string_view CALL<double> = "elementDoubleValue";

struct Callbacks {
    static void startDocument(DFDLDocHandler* handler, const char*, const DFDLChar*, int32_t) {
        of(handler)->bytes = -1;
        Line(of(handler), "startDocument");
    }

    static void endDocument(DFDLDocHandler* handler, DFDLWORD bytes) {
        of(handler)->bytes = bytes;
        Line(of(handler), "endDocument").add("bytes", bytes);
    }

    static void startElement(DFDLDocHandler* handler, int32_t id, const DFDLChar* name, int32_t namespaceId,
                             const DFDLChar* namespaceUri, const DFDLChar* designator, DFDLWORD start) {
        Line(of(handler), "startElement")
            .add("name", name)
            .add("namespace", namespaceUri)
            .add("id", id)
            .add("namespaceId", namespaceId)
            .add("scd", designator)
            .add("start", start);
    }

    static void endElement(DFDLDocHandler* handler, DFDLWORD end) {
        Line(of(handler), "endElement").add("end", end);
    }

    static void nil(DFDLDocHandler* handler) { Line(of(handler), "nil"); }

    static void string(DFDLDocHandler* handler, const DFDLChar* characters, int32_t length, uint32_t type) {
        const ValueLine line(handler, "elementStringValue", type);
        appendJsonString(line.text, viewOf(characters, length));
    }

    template <class Number>
    static void number(DFDLDocHandler* handler, Number value, uint32_t type) {
        const ValueLine line(handler, CALL<Number>, type);
        appendJsonNumber(line.text, value);
    }

    static void decimal(DFDLDocHandler* handler, const char* digits, int32_t length, uint32_t type) {
        const ValueLine line(handler, "elementDecimalValue", type);
        line.text += '"';
        if (length > 0) line.text.append(digits, static_cast<size_t>(length));
        line.text += '"';
    }

    static void boolean(DFDLDocHandler* handler, DFDLBoolean value, uint32_t type) {
        const ValueLine line(handler, "elementBooleanValue", type);
        line.text += value != 0 ? "true" : "false";
    }

    static void binary(DFDLDocHandler* handler, const uint8_t* bytes, DFDLWORD length, uint32_t type) {
        const ValueLine line(handler, "elementBinaryValue", type);
        line.text += '"';
        if (length > 0) appendHex(line.text, bytes, static_cast<size_t>(length));
        line.text += '"';
    }

    static void calendar(DFDLDocHandler* handler, const DFDLCalendar* calendar, uint32_t type) {
        int32_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
        DfdlCalendar_getDate(calendar, &year, &month, &day);
        DfdlCalendar_getTime(calendar, &hour, &minute, &second);
        ValueLine line(handler, "elementCalendarValue", type);
        line.text += "{\"year\":";
        appendNumber(line.text, int64_t{year});
        line.add("month", month)
            .add("day", day)
            .add("hour", hour)
            .add("minute", minute)
            .add("second", second);
        if (DfdlCalendar_hasMicroSec(calendar)) line.add("microSecond", DfdlCalendar_getMicroSec(calendar));
        if (DfdlCalendar_hasTimeZone(calendar)) {
            line.add("timeZoneOffset", DfdlCalendar_getTimeZoneOffset(calendar));
        }
        line.text += '}';
    }
};

// ---- regions --------------------------------------------------------------------------------------------

void elementStart(DFDLRegionHandler* handler, const DFDLChar* name, const DFDLChar* namespaceUri,
                  const DFDLChar* designator, DFDLWORD position, const char* encoding) {
    Line line(of(handler), "elementStart");
    line.add("name", name).add("namespace", namespaceUri).add("scd", designator).add("position", position);
    line.name("encoding");
    if (encoding == nullptr) {
        line.text += "null";
    } else {
        appendJsonString(line.text, toUtf16(encoding).value_or(u""));
    }
}

void place(DFDLRegionHandler* handler, std::string_view event, const DFDLChar* designator,
           DFDLWORD position) {
    Line(of(handler), event).add("scd", designator).add("position", position);
}

void elementEnd(DFDLRegionHandler* handler, const DFDLChar* designator, DFDLWORD position) {
    place(handler, "elementEnd", designator, position);
}
void groupStart(DFDLRegionHandler* handler, const DFDLChar* designator, DFDLWORD position) {
    place(handler, "groupStart", designator, position);
}
void groupEnd(DFDLRegionHandler* handler, const DFDLChar* designator, DFDLWORD position) {
    place(handler, "groupEnd", designator, position);
}

struct Region {
    std::string_view event;
    void (*set)(DFDLRegionHandler*, DFDLRegionCallback);
};
constexpr Region REGIONS[] = {
    {"leadingAlignmentRegion", DFDLRegionHandler_setLeadingAlignmentRegionCallback},
    {"initiatorRegion", DFDLRegionHandler_setInitiatorRegionCallback},
    {"simpleContentRegion", DFDLRegionHandler_setSimpleContentRegionCallback},
    {"terminatorRegion", DFDLRegionHandler_setTerminatorRegionCallback},
    {"trailingAlignmentRegion", DFDLRegionHandler_setTrailingAlignmentRegionCallback},
    {"prefixSeparatorRegion", DFDLRegionHandler_setPrefixSeparatorRegionCallback},
    {"infixSeparatorRegion", DFDLRegionHandler_setInfixSeparatorRegionCallback},
    {"postfixSeparatorRegion", DFDLRegionHandler_setPostfixSeparatorRegionCallback},
};

template <size_t N>
void region(DFDLRegionHandler* handler, const DFDLChar* designator, DFDLWORD start, DFDLWORD length) {
    Line(of(handler), REGIONS[N].event).add("scd", designator).add("start", start).add("length", length);
}

template <size_t... N>
void setRegions(DFDLRegionHandler* handler, std::index_sequence<N...>) {
    (REGIONS[N].set(handler, region<N>), ...);
}

// ---- handlers -------------------------------------------------------------------------------------------

DFDLDocHandler* makeDocHandler(EventWriter* writer) {
    DFDLDocHandler* h = new_DFDLDocHandler();
    if (h == nullptr) return nullptr;
    DFDLDocHandler_setContextObject(h, writer);
    setDocCallbacks<Callbacks>(h);
    return h;
}

DFDLRegionHandler* makeRegionHandler(EventWriter* writer) {
    DFDLRegionHandler* h = new_DFDLRegionHandler();
    if (h == nullptr) return nullptr;
    DFDLRegionHandler_setContextObject(h, writer);
    DFDLRegionHandler_setElementStartCallback(h, elementStart);
    DFDLRegionHandler_setElementEndCallback(h, elementEnd);
    DFDLRegionHandler_setGroupStartCallback(h, groupStart);
    DFDLRegionHandler_setGroupEndCallback(h, groupEnd);
    setRegions(h, std::make_index_sequence<std::size(REGIONS)>());
    return h;
}

DFDLErrorHandler* makeErrorHandler(EventWriter* writer) {
    DFDLErrorHandler* h = new_DFDLErrorHandler();
    if (h == nullptr) return nullptr;
    DFDLErrorHandler_setContextObject(h, writer);
    DFDLErrorHandler_setProcessingErrorCallback(
        h, [](auto* handler, auto* d) { EventWriter_diagnostic(of(handler), "processingError", d); });
    DFDLErrorHandler_setWarningCallback(
        h, [](auto* handler, auto* d) { EventWriter_diagnostic(of(handler), "warning", d); });
    DFDLErrorHandler_setValidationErrorCallback(
        h, [](auto* handler, auto* d) { EventWriter_diagnostic(of(handler), "validationError", d); });
    DFDLErrorHandler_setSchemaDefinitionErrorCallback(
        h, [](auto* handler, auto* d) { EventWriter_diagnostic(of(handler), "schemaDefinitionError", d); });
    return h;
}

}  // namespace

EventWriter* new_EventWriter(Output* out) {
    auto* writer = new EventWriter{out, nullptr, nullptr, nullptr, -1};
    writer->document = makeDocHandler(writer);
    writer->regions = makeRegionHandler(writer);
    writer->errors = makeErrorHandler(writer);
    if (writer->document != nullptr && writer->regions != nullptr && writer->errors != nullptr) return writer;
    delete_EventWriter(writer);
    return nullptr;
}

void delete_EventWriter(EventWriter* this_) {
    if (this_ == nullptr) return;
    delete_DFDLErrorHandler(this_->errors);
    delete_DFDLRegionHandler(this_->regions);
    delete_DFDLDocHandler(this_->document);
    delete this_;
}

void EventWriter_diagnostic(EventWriter* this_, const char* event, const DFDLDiagnostic* diagnostic) {
    const DFDLChar* summary = nullptr;
    int32_t length = 0;
    DFDLDiagnostic_getSummary(diagnostic, &summary, &length);
    Line line(this_, event);
    line.add("type", DFDLDiagnostic_getType(diagnostic)).add("code", DFDLDiagnostic_getCode(diagnostic));
    line.name("summary");
    appendJsonString(line.text, viewOf(summary, length));
}

void appendJsonString(std::string& out, std::u16string_view text) {
    out += '"';
    for (size_t i = 0; i < text.size();) {
        const char16_t unit = text[i];
        if (unit >= 0x20 && unit < 0x7F && unit != '"' && unit != '\\') {
            out += static_cast<char>(unit);
            i++;
        } else {
            appendJsonCharacter(out, nextCodePoint(text, i));
        }
    }
    out += '"';
}
