// Writes the classes by which a host program builds a grammar in memory: one thin class for each message of
// the schema, in a header that needs no Protocol Buffers. Runs while the library is built.
//
//   pifwrappergen DESCRIPTORS HEADER SOURCE

#include <google/protobuf/descriptor.h>
#include <google/protobuf/descriptor.pb.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <utility>

namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::FileDescriptor;
using std::string;

constexpr char FIRST_TABLE[] = "pif_globals_table";

string replaced(string text, std::initializer_list<std::pair<const char*, string>> values) {
    for (const auto& [name, value] : values) {
        for (size_t place = text.find(name); place != string::npos;
             place = text.find(name, place + value.size())) {
            text.replace(place, string(name).size(), value);
        }
    }
    return text;
}

string lower(string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

// What Protocol Buffers call the accessors of a field.
string accessor(const FieldDescriptor& field) {
    const string name = field.lowercase_name();
    return name == "namespace" ? name + "_" : name;
}

bool isText(const FieldDescriptor& field) { return field.cpp_type() == FieldDescriptor::CPPTYPE_STRING; }

const char* typeOf(const FieldDescriptor& field) {
    switch (field.cpp_type()) {
        case FieldDescriptor::CPPTYPE_BOOL:
            return "bool";
        case FieldDescriptor::CPPTYPE_DOUBLE:
            return "double";
        case FieldDescriptor::CPPTYPE_ENUM:
            return "int";
        default:
            return "int32_t";
    }
}

string declarationsOf(const FieldDescriptor& field) {
    const char* text = isText(field) ? "    const std::string& get_$F() const;\n"
                                       "    void set_$F(const std::string& value);\n"
                                       "    void set_$F(const char* value);\n"
                                       "    void set_$F(const char* value, size_t length);\n"
                                       "    bool has_$F() const;\n"
                                     : "    $T get_$F() const;\n"
                                       "    void set_$F($T value);\n"
                                       "    bool has_$F() const;\n";
    return replaced(text, {{"$F", lower(field.name())}, {"$T", typeOf(field)}});
}

string setterBodyOf(const FieldDescriptor& field) {
    if (field.cpp_type() != FieldDescriptor::CPPTYPE_ENUM) return "message_->set_$A(value);";
    const string type = "PIF::" + replaced(field.enum_type()->full_name().substr(4), {{".", "_"}});
    return replaced("if ($E_IsValid(value)) message_->set_$A(static_cast<$E>(value));", {{"$E", type}});
}

string definitionsOf(const Descriptor& message, const FieldDescriptor& field) {
    const char* text = isText(field)
                           ? "const std::string& $C::get_$F() const { return message_->$A(); }\n"
                             "void $C::set_$F(const std::string& value) { message_->set_$A(value); }\n"
                             "void $C::set_$F(const char* value) { message_->set_$A(textOf(value)); }\n"
                             "void $C::set_$F(const char* value, size_t length) {\n"
                             "    message_->set_$A(textOf(value), value == nullptr ? 0 : length);\n}\n"
                             "bool $C::has_$F() const { return message_->has_$A(); }\n"
                           : "$T $C::get_$F() const { return message_->$A(); }\n"
                             "void $C::set_$F($T value) { $S }\n"
                             "bool $C::has_$F() const { return message_->has_$A(); }\n";
    return replaced(text, {{"$S", setterBodyOf(field)},
                           {"$C", message.name()},
                           {"$F", lower(field.name())},
                           {"$A", accessor(field)},
                           {"$T", typeOf(field)}});
}

const Descriptor* rowOf(const Descriptor& message) {
    const FieldDescriptor* row = message.FindFieldByName("row");
    return row != nullptr && row->is_repeated() ? row->message_type() : nullptr;
}

string rowClass(const Descriptor& message) {
    string text =
        "class DFDL_API $C {\n  public:\n    explicit $C(PIF::$C* message) : message_(message) {}\n"
        "    $C* operator->() { return this; }\n\n";
    for (int index = 0; index < message.field_count(); ++index) text += declarationsOf(*message.field(index));
    text += "\n  private:\n    PIF::$C* message_;\n};\n\n";
    return replaced(text, {{"$C", message.name()}});
}

string tableClass(const Descriptor& message, const Descriptor& row) {
    return replaced(
        "class DFDL_API $C {\n  public:\n    explicit $C(PIF::$C* message) : message_(message) {}\n\n"
        "    $R add_row();\n    $R mutable_row(int index);  // below row_size()\n    int row_size() "
        "const;\n\n"
        "  private:\n    PIF::$C* message_;\n};\n\n",
        {{"$C", message.name()}, {"$R", row.name()}});
}

string tableDefinitions(const Descriptor& message, const Descriptor& row) {
    return replaced(
        "$R $C::add_row() { return $R(message_->add_row()); }\n"
        "$R $C::mutable_row(int index) { return $R(message_->mutable_row(index)); }\n"
        "int $C::row_size() const { return message_->row_size(); }\n",
        {{"$C", message.name()}, {"$R", row.name()}});
}

string rootClass(const Descriptor& root) {
    string text =
        "// A whole grammar. Its tables and their rows are valid as long as it lives, a row also only until "
        "the\n"
        "// next parse().\n"
        "class DFDL_API MPIF {\n  public:\n    MPIF();\n    ~MPIF();\n"
        "    MPIF(MPIF&& other) noexcept;  // leaves the other without a message: fit to be destroyed only\n"
        "    MPIF(const MPIF&) = delete;\n    MPIF& operator=(const MPIF&) = delete;\n\n";
    for (int index = 0; index < root.field_count(); ++index) {
        const FieldDescriptor& field = *root.field(index);
        text += "    " + field.message_type()->name() + "* mutable_" + field.name() + "();\n";
    }
    text +=
        "\n    PIF::MPIF* pPIF();\n    const PIF::MPIF* pPIF() const;\n"
        "    bool serialize(const char* path) const;  // to a file, false if it cannot be written\n"
        "    bool parse(const char* path);  // from a file; false, and empty, if it holds no grammar\n\n"
        "  private:\n    struct Tables;\n    PIF::MPIF* message_;\n    Tables* tables_;\n};\n\n";
    return text;
}

string rootDefinitions(const Descriptor& root) {
    string members;
    string starts;
    string getters;
    for (int index = 0; index < root.field_count(); ++index) {
        const FieldDescriptor& field = *root.field(index);
        const std::initializer_list<std::pair<const char*, string>> names = {
            {"$C", field.message_type()->name()}, {"$F", field.name()}};
        const string member = replaced("    $C $F;\n", names);
        const string start = replaced("$F(message->mutable_$F())", names);
        const bool first = field.name() == FIRST_TABLE;
        members = first ? member + members : members + member;
        starts = first ? start + (starts.empty() ? "" : ", ") + starts
                       : starts + (starts.empty() ? "" : ", ") + start;
        getters += replaced("$C* MPIF::mutable_$F() { return &tables_->$F; }\n", names);
    }
    return "struct MPIF::Tables {\n" + members + "    explicit Tables(PIF::MPIF* message) : " + starts +
           " {}\n};\n\n" + getters;
}

constexpr char HEADER_START[] = R"(// Made from the schema of the grammar; do not edit.
#ifndef DFDL_PIFWRAPPER_H
#define DFDL_PIFWRAPPER_H

#include <dfdl/dfdl.h>

#include <cstddef>
#include <cstdint>
#include <string>

// Classes by which a C++ program builds a compiled grammar in memory, without Protocol Buffers of its own. Each
// row and table is a thin handle on a message. Enumerated fields are their numbers; a number that the enumeration
// has not is not taken. In every field that refers to a row, -1 is none and has to be set.

namespace PIF {
)";

constexpr char HEADER_END[] = R"(}  // namespace PIFWrapper

// As the functions of <dfdl/dfdl.h> that make a grammar. The wrapper stays the caller's and is not needed any
// more when this returns.
extern "C" DFDL_API DFDLGrammar* new_DFDLGrammarFromPIFWrapper(DFDLHeap* heap, PIFWrapper::MPIF* wrapper,
                                                               DFDLServiceTraceHandler* handler,
                                                               int* resultCode);

#endif
)";

constexpr char SOURCE_START[] = R"(// Made from the schema of the grammar; do not edit.
#include "dfdl/pifwrapper.h"

#include <fstream>
#include <memory>

#include "pif.pb.h"

namespace PIFWrapper {

namespace {

const char* textOf(const char* value) { return value == nullptr ? "" : value; }

}  // namespace

)";

constexpr char SOURCE_END[] = R"(
MPIF::MPIF() {
    auto message = std::make_unique<PIF::MPIF>();
    tables_ = new Tables(message.get());
    message_ = message.release();
}

MPIF::MPIF(MPIF&& other) noexcept : message_(other.message_), tables_(other.tables_) {
    other.message_ = nullptr;
    other.tables_ = nullptr;
}

MPIF::~MPIF() {
    delete tables_;
    delete message_;
}

PIF::MPIF* MPIF::pPIF() { return message_; }
const PIF::MPIF* MPIF::pPIF() const { return message_; }

bool MPIF::serialize(const char* path) const {
    if (message_ == nullptr) return false;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    return file.is_open() && message_->SerializePartialToOstream(&file) && file.flush().good();
}

bool MPIF::parse(const char* path) {
    if (message_ == nullptr) return false;
    std::ifstream file(path, std::ios::binary);
    const bool parsed = file.is_open() && message_->ParsePartialFromIstream(&file);
    if (!parsed) message_->Clear();
    *tables_ = Tables(message_);
    return parsed;
}

}  // namespace PIFWrapper
)";

template <class Visit>
void forMessages(const FileDescriptor& file, Visit visit) {
    for (int index = 0; index < file.message_type_count(); ++index) {
        const Descriptor& message = *file.message_type(index);
        if (message.field_count() > 0) visit(message);
    }
}

string headerOf(const FileDescriptor& file) {
    string forward;
    string classes;
    forMessages(file, [&](const Descriptor& message) {
        forward += "class " + message.name() + ";\n";
        const Descriptor* row = rowOf(message);
        classes += message.name() == "MPIF" ? rootClass(message)
                   : row != nullptr         ? tableClass(message, *row)
                                            : rowClass(message);
    });
    return HEADER_START + forward + "}\n\nnamespace PIFWrapper {\n\n" + classes + HEADER_END;
}

string sourceOf(const FileDescriptor& file) {
    string text = SOURCE_START;
    forMessages(file, [&](const Descriptor& message) {
        const Descriptor* row = rowOf(message);
        if (message.name() == "MPIF") {
            text += rootDefinitions(message);
        } else if (row != nullptr) {
            text += tableDefinitions(message, *row);
        } else {
            for (int index = 0; index < message.field_count(); ++index) {
                text += definitionsOf(message, *message.field(index));
            }
        }
        text += "\n";
    });
    return text + SOURCE_END;
}

bool write(const char* path, const string& text) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    return file.flush().good();
}

int fail(const char* what, const char* path) {
    std::fprintf(stderr, "pifwrappergen: %s %s\n", what, path);
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) return fail("usage:", "pifwrappergen DESCRIPTORS HEADER SOURCE");
    std::ifstream input(argv[1], std::ios::binary);
    google::protobuf::FileDescriptorSet files;
    if (!files.ParseFromIstream(&input) || files.file_size() != 1) return fail("cannot read", argv[1]);
    google::protobuf::DescriptorPool pool;
    const FileDescriptor* file = pool.BuildFile(files.file(0));
    if (file == nullptr) return fail("no schema in", argv[1]);
    if (!write(argv[2], headerOf(*file))) return fail("cannot write", argv[2]);
    if (!write(argv[3], sourceOf(*file))) return fail("cannot write", argv[3]);
    return 0;
}
