#include "grammarcommands.h"

#include <google/protobuf/descriptor.h>
#include <google/protobuf/io/tokenizer.h>
#include <google/protobuf/message.h>
#include <google/protobuf/text_format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <vector>

#include "grammarshow.h"
#include "output.h"
#include "pif.pb.h"

namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using google::protobuf::TextFormat;

constexpr int32_t NONE = -1;

Status complain(Status status, const std::string& message) {
    fprintf(stderr, "dfdl: %s\n", message.c_str());
    return status;
}

bool readFile(const std::string& path, std::string& content) {
    errno = 0;
    FILE* file = path == "-" ? stdin : fopen(path.c_str(), "rb");
    if (file == nullptr) return false;
    char piece[65536];
    size_t count = 0;
    while ((count = fread(piece, 1, sizeof piece, file)) > 0) content.append(piece, count);
    const bool good = ferror(file) == 0;
    const int error = errno;
    if (file != stdin) fclose(file);
    errno = error;
    return good;
}

Status writeFile(const std::string& path, std::string content) {
    Output output;
    if (!Output_open(&output, path)) return complain(STATUS_USAGE, path + ": " + strerror(errno));
    output.text = std::move(content);
    Output_close(&output);
    return STATUS_PARSED;
}

Status readGrammar(const std::string& path, PIF::MPIF& grammar) {
    std::string content;
    if (!readFile(path, content)) return complain(STATUS_GRAMMAR, path + ": " + strerror(errno));
    if (grammar.ParsePartialFromString(content)) return STATUS_PARSED;
    return complain(STATUS_GRAMMAR, path + ": it is not a compiled grammar");
}

// Says where the text is wrong, counted from 1 as editors do.
struct ErrorPrinter : google::protobuf::io::ErrorCollector {
    explicit ErrorPrinter(const std::string& file) : path(file) {}
    void AddError(int line, int column, const std::string& message) override {
        fprintf(stderr, "%s:%d:%d: %s\n", path.c_str(), line + 1, column + 1, message.c_str());
    }
    const std::string& path;
};

bool endsWithAny(std::string_view name, std::initializer_list<std::string_view> endings) {
    for (const std::string_view ending : endings) {
        if (name.ends_with(ending)) return true;
    }
    return false;
}

// Whether -1 means none in this field. The two keys of a choice are none by their absence.
bool isReference(const FieldDescriptor& field) {
    if (field.cpp_type() != FieldDescriptor::CPPTYPE_INT32 || field.is_repeated()) return false;
    const std::string& name = field.name();
    if (name == "iChoiceDispatchKeyIndex" || name == "iChoiceBranchKeyIndex") return false;
    return endsWithAny(name, {"Index", "Id", "ID", "_id", "Expr"});
}

// Calls visit(row, field) for every reference of every row of every table.
template <class Visit>
void forEachReference(Message& grammar, Visit visit) {
    std::vector<const FieldDescriptor*> tables;
    grammar.GetReflection()->ListFields(grammar, &tables);
    for (const FieldDescriptor* tableField : tables) {
        Message* table = grammar.GetReflection()->MutableMessage(&grammar, tableField);
        const FieldDescriptor* rows = table->GetDescriptor()->FindFieldByName("row");
        const int count = table->GetReflection()->FieldSize(*table, rows);
        const auto* rowType = rows->message_type();
        for (int f = 0; f < rowType->field_count(); f++) {
            const FieldDescriptor* field = rowType->field(f);
            if (!isReference(*field)) continue;
            for (int i = 0; i < count; i++) {
                visit(*table->GetReflection()->MutableRepeatedMessage(table, rows, i), field);
            }
        }
    }
}

void writeNone(Message& row, const FieldDescriptor* field) {
    if (!row.GetReflection()->HasField(row, field)) row.GetReflection()->SetInt32(&row, field, NONE);
}

void leaveOutNone(Message& row, const FieldDescriptor* field) {
    const auto* reflection = row.GetReflection();
    if (!reflection->HasField(row, field)) {
        reflection->SetInt32(&row, field, 0);
    } else if (reflection->GetInt32(row, field) == NONE) {
        reflection->ClearField(&row, field);
    }
}

}  // namespace

Status encodeGrammar(const std::string& textPath, const std::string& pifPath) {
    std::string text;
    if (!readFile(textPath, text)) return complain(STATUS_USAGE, textPath + ": " + strerror(errno));
    PIF::MPIF grammar;
    ErrorPrinter errors(textPath);
    TextFormat::Parser parser;
    parser.RecordErrorsTo(&errors);
    if (!parser.ParseFromString(text, &grammar)) return STATUS_USAGE;
    forEachReference(grammar, writeNone);
    return writeFile(pifPath, grammar.SerializeAsString());
}

Status decodeGrammar(const std::string& pifPath, const std::string& textPath) {
    PIF::MPIF grammar;
    const Status status = readGrammar(pifPath, grammar);
    if (status != STATUS_PARSED) return status;
    forEachReference(grammar, leaveOutNone);
    TextFormat::Printer printer;
    printer.SetUseUtf8StringEscaping(true);
    printer.SetHideUnknownFields(true);
    std::string text;
    printer.PrintToString(grammar, &text);
    return writeFile(textPath, std::move(text));
}

Status showGrammar(const std::string& pifPath, const std::string& outputPath) {
    PIF::MPIF grammar;
    const Status status = readGrammar(pifPath, grammar);
    return status == STATUS_PARSED ? writeFile(outputPath, describeGrammar(grammar)) : status;
}
