#include "xmlwriter.h"

#include <algorithm>
#include <string_view>

#include "doccallbacks.h"
#include "text.h"

namespace {

constexpr char32_t PRIVATE_USE = 0xE000;

XmlWriter* of(const DFDLDocHandler* handler) {
    return static_cast<XmlWriter*>(DFDLDocHandler_getContextObject(handler));
}

// Where a character that XML forbids goes; any other stays.
char32_t mapForbidden(char32_t c) {
    if (c < 0x20 && c != '\t' && c != '\n' && c != '\r') return PRIVATE_USE + c;
    if (isSurrogate(c)) return PRIVATE_USE + (c & 0xFFF);
    if (c == 0xFFFE || c == 0xFFFF) return 0xF000 + (c & 0xFF);
    return c;
}

void appendXmlCharacter(std::string& out, char32_t c) {
    switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\r':
            out += "&#xD;";
            break;  // a bare one reads back as a line feed
        default:
            appendUtf8(out, mapForbidden(c));
    }
}

void appendXmlText(std::string& out, std::u16string_view text) {
    for (size_t i = 0; i < text.size();) appendXmlCharacter(out, nextCodePoint(text, i));
}

bool isNameCharacter(char32_t c, bool first) {
    if (c >= 0x80) return !isSurrogate(c) && c != 0xFFFE && c != 0xFFFF;
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_') return true;
    return !first && ((c >= '0' && c <= '9') || c == '-' || c == '.');
}

// A grammar is free to hold any text as a name: what no XML name can hold becomes _xHHHH_.
void appendXmlName(std::string& out, std::u16string_view name) {
    for (size_t i = 0; i < name.size();) {
        const bool first = i == 0;
        const char32_t c = nextCodePoint(name, i);
        if (isNameCharacter(c, first)) {
            appendUtf8(out, c);
        } else {
            const uint8_t bytes[] = {static_cast<uint8_t>(c >> 8), static_cast<uint8_t>(c)};
            out += "_x";
            appendHex(out, bytes, sizeof bytes);
            out += '_';
        }
    }
    if (name.empty()) out += '_';
}

void newLine(XmlWriter* writer, size_t depth) {
    writer->out->text += '\n';
    writer->out->text.append(2 * depth, ' ');
    Output_endLine(writer->out);
}

void appendPrefix(std::string& out, size_t index) {
    out += "ns";
    appendNumber(out, uint64_t{index});
}

// The index of the namespace among those in scope, which it joins if it is new.
size_t scopeOf(XmlWriter* writer, std::u16string_view uri, bool& isNew) {
    const auto found = std::find(writer->namespaces.begin(), writer->namespaces.end(), uri);
    const auto index = static_cast<size_t>(found - writer->namespaces.begin());
    isNew = found == writer->namespaces.end();
    if (isNew) writer->namespaces.emplace_back(uri);
    return index;
}

// Where the text of a value goes.
std::string& valueText(DFDLDocHandler* handler) {
    XmlWriter* writer = of(handler);
    if (writer->tagOpen) writer->out->text += '>';
    writer->tagOpen = false;
    writer->hasValue = true;
    return writer->out->text;
}

// `value` in at least `digits` digits; `value` is not negative.
void appendPadded(std::string& out, int32_t value, size_t digits) {
    std::string text;
    appendNumber(text, int64_t{value});
    if (text.size() < digits) out.append(digits - text.size(), '0');
    out += text;
}

void appendDate(std::string& out, const DFDLCalendar* calendar) {
    int32_t year = 0, month = 0, day = 0;
    DfdlCalendar_getDate(calendar, &year, &month, &day);
    if (year < 0) out += '-';
    appendPadded(out, year < 0 ? -year : year, 4);
    out += '-';
    appendPadded(out, month + 1, 2);
    out += '-';
    appendPadded(out, day, 2);
}

void appendTime(std::string& out, const DFDLCalendar* calendar) {
    int32_t hour = 0, minute = 0, second = 0;
    DfdlCalendar_getTime(calendar, &hour, &minute, &second);
    appendPadded(out, hour, 2);
    out += ':';
    appendPadded(out, minute, 2);
    out += ':';
    appendPadded(out, second, 2);
    if (DfdlCalendar_hasMicroSec(calendar) == 0) return;
    out += '.';
    appendPadded(out, DfdlCalendar_getMicroSec(calendar), 6);
}

void appendZone(std::string& out, const DFDLCalendar* calendar) {
    if (DfdlCalendar_hasTimeZone(calendar) == 0) return;
    const int32_t minutes = DfdlCalendar_getTimeZoneOffset(calendar);
    const int32_t size = minutes < 0 ? -minutes : minutes;
    out += minutes < 0 ? '-' : '+';
    appendPadded(out, size / 60, 2);
    out += ':';
    appendPadded(out, size % 60, 2);
}

struct Callbacks {
    static void startDocument(DFDLDocHandler* handler, const char*, const DFDLChar*, int32_t) {
        XmlWriter* writer = of(handler);
        writer->bytes = -1;
        writer->open.clear();
        writer->names.clear();
        writer->namespaces.clear();
        writer->tagOpen = writer->hasValue = false;
        writer->out->text += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
    }

    static void endDocument(DFDLDocHandler* handler, DFDLWORD bytes) { of(handler)->bytes = bytes; }

    static void startElement(DFDLDocHandler* handler, int32_t, const DFDLChar* name, int32_t,
                             const DFDLChar* namespaceUri, const DFDLChar*, DFDLWORD) {
        XmlWriter* writer = of(handler);
        std::string& out = writer->out->text;
        if (writer->tagOpen) out += '>';
        newLine(writer, writer->open.size());
        const XmlWriter::Open element{writer->names.size(), writer->namespaces.size()};
        const std::u16string_view uri = viewOf(namespaceUri);
        bool declares = false;
        if (!uri.empty()) {
            appendPrefix(writer->names, scopeOf(writer, uri, declares));
            writer->names += ':';
        }
        appendXmlName(writer->names, viewOf(name));
        writer->open.push_back(element);
        out += '<';
        out.append(writer->names, element.name);
        if (declares) {
            out += " xmlns:";
            appendPrefix(out, element.namespaces);
            out += "=\"";
            appendXmlText(out, uri);
            out += '"';
        }
        writer->tagOpen = true;
        writer->hasValue = false;
    }

    static void endElement(DFDLDocHandler* handler, DFDLWORD) {
        XmlWriter* writer = of(handler);
        if (writer->open.empty()) return;
        std::string& out = writer->out->text;
        const XmlWriter::Open element = writer->open.back();
        writer->open.pop_back();
        if (writer->tagOpen) {
            out += "/>";
        } else {
            if (!writer->hasValue) newLine(writer, writer->open.size());
            out += "</";
            out.append(writer->names, element.name);
            out += '>';
        }
        writer->names.resize(element.name);
        writer->namespaces.resize(element.namespaces);
        writer->tagOpen = writer->hasValue = false;
        if (writer->open.empty()) newLine(writer, 0);
    }

    static void nil(DFDLDocHandler* handler) {
        of(handler)->out->text += " xsi:nil=\"true\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"";
    }

    static void string(DFDLDocHandler* handler, const DFDLChar* characters, int32_t length, uint32_t) {
        if (length > 0) appendXmlText(valueText(handler), viewOf(characters, length));
    }

    static void decimal(DFDLDocHandler* handler, const char* digits, int32_t length, uint32_t) {
        if (length > 0) valueText(handler).append(digits, static_cast<size_t>(length));
    }

    static void boolean(DFDLDocHandler* handler, DFDLBoolean value, uint32_t) {
        valueText(handler) += value != 0 ? "true" : "false";
    }

    static void binary(DFDLDocHandler* handler, const uint8_t* bytes, DFDLWORD length, uint32_t) {
        if (length > 0) appendHex(valueText(handler), bytes, static_cast<size_t>(length));
    }

    template <class Number>
    static void number(DFDLDocHandler* handler, Number value, uint32_t) {
        if constexpr (std::is_floating_point_v<Number>) {
            appendNumber(valueText(handler), value);
        } else if constexpr (std::is_signed_v<Number>) {
            appendNumber(valueText(handler), int64_t{value});
        } else {
            appendNumber(valueText(handler), uint64_t{value});
        }
    }

    static void calendar(DFDLDocHandler* handler, const DFDLCalendar* calendar, uint32_t type) {
        std::string& out = valueText(handler);
        if (type != DFDL_VALUE_TIME) appendDate(out, calendar);
        if (type == DFDL_VALUE_DATETIME) out += 'T';
        if (type != DFDL_VALUE_DATE) appendTime(out, calendar);
        appendZone(out, calendar);
    }
};

}  // namespace

XmlWriter* new_XmlWriter(Output* out) {
    DFDLDocHandler* handler = new_DFDLDocHandler();
    if (handler == nullptr) return nullptr;
    auto* writer = new XmlWriter{out, handler, {}, {}, {}, false, false, -1};
    DFDLDocHandler_setContextObject(handler, writer);
    setDocCallbacks<Callbacks>(handler);
    return writer;
}

void delete_XmlWriter(XmlWriter* this_) {
    if (this_ == nullptr) return;
    delete_DFDLDocHandler(this_->document);
    delete this_;
}
