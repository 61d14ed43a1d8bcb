#include "grammarshow.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "pif.pb.h"

namespace {

using Member = PIF::MGroupMemberTableRow;
using Enums = PIF::MPIFEnums;

constexpr size_t MAX_DEPTH = 200;  // a deeper one is nothing to look at, and would exhaust the stack

// One walk through a grammar.
struct Tree {
    const PIF::MPIF& grammar;
    std::unordered_map<int32_t, const PIF::MElementTableRow*> elements;  // by their ids, as are the next two
    std::unordered_map<int32_t, const PIF::MGroupTableRow*> groups;
    std::unordered_map<int32_t, const PIF::MSimpleTypeTableRow*> types;
    std::unordered_map<int32_t, std::vector<const Member*>> members;  // by the group that they belong to
    std::unordered_set<int32_t> shown;                                // groups whose content stands above
    std::string text;
};

template <class Table, class Id, class Map>
void index(const Table& table, Id id, Map& map) {
    for (const auto& row : table.row()) map.emplace((row.*id)(), &row);
}

// A row by its number, null where the number is no row.
template <class Table>
auto* rowAt(const Table& table, int32_t number) {
    return number >= 0 && number < table.row_size() ? &table.row(number) : nullptr;
}

template <class Id, class Row>
const Row* find(const std::unordered_map<Id, const Row*>& map, int32_t id) {
    const auto found = map.find(id);
    return found == map.end() ? nullptr : found->second;
}

// The schema's NAME_OF_A_VALUE in small letters.
std::string word(const std::string& name) {
    std::string result = name;
    for (char& c : result) c = c == '_' ? ' ' : static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    return result;
}

// Text of the grammar, without what would upset a terminal.
std::string printable(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
    }
    return text;
}

std::string expression(const Tree& tree, int32_t number) {
    const auto* row = rowAt(tree.grammar.expressions_table(), number);
    return row == nullptr ? "" : printable(row->imessage());
}

std::string literal(const Tree& tree, int32_t number) {
    const auto* row = rowAt(tree.grammar.string_literal_table(), number);
    const auto* part =
        row == nullptr ? nullptr : rowAt(tree.grammar.string_part_table(), row->istringpartindex());
    return part == nullptr ? "" : '"' + printable(part->istringpart()) + '"';
}

void add(std::string& line, const std::string& what, const std::string& value) {
    if (!value.empty()) line += ", " + what + value;
}

std::string occurrences(const Tree& tree, const Member& member) {
    std::string result = " [" + std::to_string(member.min_occurs()) + "..";
    result += member.max_occurs() < 0 ? "*" : std::to_string(member.max_occurs());
    result += ']';
    const auto* scheme = rowAt(tree.grammar.occurs_scheme_table(), member.ioccursschemetableindex());
    if (scheme == nullptr) return result;
    result += ' ' + word(Enums::MOccursCountKindEnum_Name(scheme->ioccurscountkind())).substr(4);
    const std::string count = expression(tree, scheme->ioccurscountexprindex());
    return count.empty() ? result : result + ' ' + count;
}

std::string length(const Tree& tree, const Member& member) {
    const auto* row = rowAt(tree.grammar.length_scheme_table(), member.ilengthschemeid() - 1);
    if (row == nullptr) return "";
    std::string result = word(Enums::MLengthKindEnum_Name(row->ilengthkind()));
    const std::string computed = expression(tree, row->ilengthexprindex());
    const std::string units = ' ' + word(Enums::MLengthUnitsEnum_Name(row->ilengthunits()));
    switch (row->ilengthkind()) {
        case Enums::EXPLICIT:
            return result + ' ' + (computed.empty() ? std::to_string(row->ilength()) : computed) + units;
        case Enums::PREFIXED: {
            const auto* prefix = find(tree.elements, row->iprefixlengthtypeindex());
            return result + " by " + (prefix == nullptr ? "?" : printable(prefix->name())) + ", in" + units;
        }
        case Enums::PATTERN:
            return result + " /" + printable(row->ilengthpattern()) + '/';
        default:
            return result;
    }
}

void addDelimiters(const Tree& tree, const Member& member, std::string& line) {
    const auto* markup = rowAt(tree.grammar.text_markup_table(), member.itextmarkupid() - 1);
    if (markup == nullptr) return;
    const auto delimiter = [&](const char* what, int32_t fixed, int32_t computed, const std::string& more) {
        const std::string given = expression(tree, computed);
        const std::string value = given.empty() ? literal(tree, fixed) : given;
        if (!value.empty()) line += std::string(", ") + what + ' ' + value + more;
    };
    delimiter("initiator", markup->iinitiatorindex(), markup->iinitiatorexprindex(), "");
    delimiter("terminator", markup->iterminatorindex(), markup->iterminatorexprindex(), "");
    delimiter("separator", markup->iseparatorindex(), markup->iseparatorexprindex(),
              ' ' + word(Enums::MSeparatorPositionEnum_Name(markup->iseparatorposition())));
}

void addText(const Tree& tree, const Member& member, std::string& line) {
    const auto* encoding = rowAt(tree.grammar.text_encoding_table(), member.itextencodingindex());
    if (encoding != nullptr && member.idfdlrepresentation() == Enums::REPRESENTATION_TEXT) {
        const std::string computed = expression(tree, encoding->iencodingexprindex());
        add(line, "", computed.empty() ? printable(encoding->iencoding()) : computed);
    }
    const auto* string = rowAt(tree.grammar.text_string_table(), member.itextstringindex());
    if (string == nullptr) return;
    if (string->itexttrimkind() == Enums::TRIM_KIND_PAD_CHAR ||
        string->itextpadkind() == Enums::PAD_KIND_PAD_CHAR) {
        line += ", padding \"" + printable(string->itextpadcharacter()) + "\" justified " +
                word(Enums::MTextJustificationEnum_Name(string->itextjustification()));
    }
}

void addAlignment(const Tree& tree, const Member& member, std::string& line) {
    const auto* row = rowAt(tree.grammar.alignment_table(), member.ialignmentid());
    if (row == nullptr) return;
    const bool bits = row->ialignmentunits() == Enums::ALUNITS_BITS;
    if (row->ialignment() > 1) {
        line += ", aligned to " + std::to_string(row->ialignment()) + (bits ? " bits" : " bytes");
    }
    if (row->ileadingskipbytes() > 0)
        line += ", skips " + std::to_string(row->ileadingskipbytes()) + " before";
    if (row->itrailingskipbytes() > 0)
        line += ", skips " + std::to_string(row->itrailingskipbytes()) + " after";
}

std::string typeName(const Tree& tree, const PIF::MElementTableRow& element) {
    const auto* type = find(tree.types, element.simple_type_id());
    if (type == nullptr) return "simple";
    return word(printable(type->pifsimpletypename()));
}

void showMembers(Tree& tree, int32_t groupId, size_t depth);

void showLine(Tree& tree, size_t depth, const std::string& line, const char* ending) {
    tree.text.append(2 * depth, ' ');
    tree.text += line;
    tree.text += ending;
    tree.text += '\n';
}

// The line, and the group's members below it unless they were shown before.
void showGroup(Tree& tree, int32_t groupId, size_t depth, const std::string& line) {
    if (depth >= MAX_DEPTH) return showLine(tree, depth, line, " (too deep to show)");
    if (!tree.shown.insert(groupId).second) return showLine(tree, depth, line, " (as above)");
    showLine(tree, depth, line, "");
    showMembers(tree, groupId, depth + 1);
}

std::string properties(const Tree& tree, const Member& member) {
    std::string line;
    add(line, "", length(tree, member));
    if (member.child_group_id() < 0) addText(tree, member, line);
    addDelimiters(tree, member, line);
    addAlignment(tree, member, line);
    return line;
}

void showElement(Tree& tree, const Member& member, size_t depth) {
    const auto* element = find(tree.elements, member.child_element_id());
    if (element == nullptr) {
        return showLine(tree, depth, "element " + std::to_string(member.child_element_id()), " (missing)");
    }
    std::string line = printable(element->name());
    if (!element->namespace_().empty()) line += " {" + printable(element->namespace_()) + '}';
    const bool complex = member.child_group_id() >= 0;
    line += ": " + (complex ? "complex" : typeName(tree, *element));
    if (!complex)
        line += member.idfdlrepresentation() == Enums::REPRESENTATION_TEXT ? " as text" : " in binary";
    line += occurrences(tree, member) + properties(tree, member);
    if (complex) {
        showGroup(tree, member.child_group_id(), depth, line);
    } else {
        showLine(tree, depth, line, "");
    }
}

std::string kindOf(const Tree& tree, int32_t groupId) {
    const auto* group = find(tree.groups, groupId);
    if (group == nullptr) return "group " + std::to_string(groupId);
    switch (group->igroupkind()) {
        case Enums::SEQUENCE_ORDERED:
            return "sequence";
        case Enums::SEQUENCE_UNORDERED:
            return "unordered sequence";
        case Enums::CHOICE:
            return "choice";
        case Enums::SEQUENCE_WITH_FLOATING_COMPONENTS:
            return "sequence with floating members";
        default:
            return "type";
    }
}

void showMembers(Tree& tree, int32_t groupId, size_t depth) {
    const auto found = tree.members.find(groupId);
    if (found == tree.members.end()) return;
    for (const Member* member : found->second) {
        if (member->child_element_id() >= 0) {
            showElement(tree, *member, depth);
        } else {
            const int32_t child = member->child_group_id();
            showGroup(tree, child, depth, '<' + kindOf(tree, child) + '>' + properties(tree, *member));
        }
    }
}

}  // namespace

std::string describeGrammar(const PIF::MPIF& grammar) {
    Tree tree{grammar, {}, {}, {}, {}, {}, {}};
    index(grammar.element_table(), &PIF::MElementTableRow::element_id, tree.elements);
    index(grammar.group_table(), &PIF::MGroupTableRow::group_id, tree.groups);
    index(grammar.simple_type_table(), &PIF::MSimpleTypeTableRow::simple_type_id, tree.types);
    for (const Member& member : grammar.group_member_table().row()) {
        tree.members[member.parent_group_id()].push_back(&member);
    }
    for (const auto& globals : grammar.pif_globals_table().row()) {
        tree.text += "format version " + std::to_string(globals.pifversion()) + '\n';
    }
    constexpr int32_t global = -1;
    showMembers(tree, global, 0);
    for (const auto& variable : grammar.variables_table().row()) {
        tree.text += "variable " + printable(variable.iname());
        if (!variable.inamespace().empty()) tree.text += " {" + printable(variable.inamespace()) + '}';
        tree.text += ": " + word(printable(variable.isimpletype()));
        tree.text += variable.iisexternal() ? ", external\n" : "\n";
    }
    return std::move(tree.text);
}
