#ifndef DFDL_TESTS_SUPPORT_GRAMMARBUILDER_H
#define DFDL_TESTS_SUPPORT_GRAMMARBUILDER_H

#include <dfdl/dfdl.h>

#include <cstdint>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "pif.pb.h"

class GrammarBuilder;

// One particle of the grammar under construction. Members of a group stand together in the file, so the tree
// is kept until the grammar is wanted; the rows of properties are made at once.
struct GrammarNode {
    PIF::MGroupMemberTableRow row;
    PIF::MElementTableRow element;
    PIF::MPIFEnums::MDFDLGroupTypeEnum groupKind = PIF::MPIFEnums::SEQUENCE_ORDERED;
    bool isElement = true;
    std::string kindName;                             // of a simple element's type
    std::vector<std::pair<int32_t, int32_t>> facets;  // kind, row of the values table
    std::vector<int32_t> nilValues;                   // rows of the values table that mean nil
    std::vector<GrammarNode*> children;               // of a complex element: its model group
    const GrammarNode* prefix = nullptr;              // of a prefixed length: a global element
    int32_t elementId = -1;                           // in the message
};

// Says what a particle is like. Cheap to copy; good while its builder lives.
class GrammarHandle {
  public:
    using DelimiterPolicy = PIF::MPIFEnums::MDelimiterPolicyEnum;

    GrammarHandle(GrammarBuilder* builder, GrammarNode* node) : builder_(builder), node_(node) {}

    // Members, at the end of a group or of a complex element's content.
    GrammarHandle complexElement(const std::string& name);
    GrammarHandle text(const std::string& name);  // a string in UTF-8, without a length
    GrammarHandle boolean(const std::string& name, const std::string& trueReps, const std::string& falseReps);
    // Texts that are numbers, of base 10 with "," and "." as separators, and calendars, strict ones with
    // English names.
    GrammarHandle textNumber(const std::string& name, const std::string& kindName,
                             const std::string& pattern);
    GrammarHandle textCalendar(const std::string& name, const std::string& kindName,
                               const std::string& pattern);
    // For what else there is to say of them.
    PIF::MTextNumberTableRow& numberRow();
    PIF::MCalendarFormatTableRow& calendarRow();
    // Binary ones, big-endian; kinds are such as "UNSIGNEDSHORT". Their lengths are said like those of texts.
    GrammarHandle number(const std::string& name, const std::string& kindName);
    GrammarHandle truth(const std::string& name, int32_t trueRep, int32_t falseRep);
    GrammarHandle opaque(const std::string& name);
    GrammarHandle seconds(const std::string& name, const std::string& kindName, const std::string& epoch);
    GrammarHandle packedCalendar(const std::string& name, const std::string& kindName,
                                 const std::string& pattern,
                                 PIF::MPIFEnums::MBinaryNumberRepEnum representation, bool isLittle = false);
    GrammarHandle littleEndian();  // of a number
    GrammarHandle packed();        // of a number, with signs C, D, F and C for zero
    GrammarHandle sequence();
    GrammarHandle unordered();
    GrammarHandle choice();
    GrammarHandle content();  // the model group of a complex element

    // Lengths. The names with "explicit" read better where a length is imposed on a complex element.
    GrammarHandle bytes(int32_t count) { return length(EXPLICIT, BYTES, count); }
    GrammarHandle characters(int32_t count) { return length(EXPLICIT, CHARACTERS, count); }
    GrammarHandle bits(int32_t count) { return length(EXPLICIT, BITS, count); }
    GrammarHandle explicitBytes(int32_t count) { return bytes(count); }
    GrammarHandle explicitCharacters(int32_t count) { return characters(count); }
    GrammarHandle explicitBits(int32_t count) { return bits(count); }
    GrammarHandle implicitBytes(int32_t count);  // the type's greatest length
    GrammarHandle implicitCharacters(int32_t count);
    GrammarHandle pattern(const std::string& expression);
    // The prefix is a global element of the same builder.
    GrammarHandle prefixed(const GrammarHandle& prefix, bool includesItself = false) {
        return prefixed(BYTES, prefix, includesItself);
    }
    GrammarHandle prefixedBits(const GrammarHandle& prefix) { return prefixed(BITS, prefix, false); }
    GrammarHandle prefixedCharacters(const GrammarHandle& prefix) {
        return prefixed(CHARACTERS, prefix, false);
    }
    GrammarHandle delimited() { return length(DELIMITED, CHARACTERS, -1); }
    GrammarHandle endOfParent() { return length(END_OF_PARENT, CHARACTERS, -1); }

    // Text.
    GrammarHandle encoding(const std::string& name);
    GrammarHandle trimRight(const std::string& pad) { return trim(pad, PIF::MPIFEnums::LEFT); }
    GrammarHandle trimLeft(const std::string& pad) { return trim(pad, PIF::MPIFEnums::RIGHT); }
    GrammarHandle trimBoth(const std::string& pad) { return trim(pad, PIF::MPIFEnums::CENTER); }

    // Alignment and framing.
    GrammarHandle align(int32_t bytes);
    GrammarHandle alignBits(int32_t bits);
    GrammarHandle skip(int32_t leading, int32_t trailing);
    GrammarHandle initiator(const std::string& literal);
    GrammarHandle terminator(const std::string& literal);
    GrammarHandle separator(const std::string& literal,
                            PIF::MPIFEnums::MSeparatorPositionEnum position = PIF::MPIFEnums::INFIX,
                            PIF::MPIFEnums::MSeparatorPolicyEnum policy = PIF::MPIFEnums::REQUIRE);
    GrammarHandle ignoreCase();
    GrammarHandle initiatedContent();
    GrammarHandle finalTerminatorCanBeMissing();
    GrammarHandle emptyValueDelimiterPolicy(DelimiterPolicy policy);
    // Of a simple element; the texts are taken as they are, without entities.
    GrammarHandle escapeCharacter(const std::string& escape, const std::string& escapeEscape = "");
    GrammarHandle escapeBlock(const std::string& start, const std::string& end,
                              const std::string& escapeEscape = "");

    // Occurrences; -1 unbounded.
    GrammarHandle occurs(int32_t least, int32_t most);
    GrammarHandle occursFixed() { return occursKind(PIF::MPIFEnums::OCK_FIXED); }
    GrammarHandle occursImplicit() { return occursKind(PIF::MPIFEnums::OCK_IMPLICIT); }
    GrammarHandle occursParsed() { return occursKind(PIF::MPIFEnums::OCK_PARSED); }

    // Names and values.
    GrammarHandle namespaceUri(const std::string& uri);
    GrammarHandle defaultValue(const std::string& value);
    // Nil, by its representation: one of the literals or filled with the character; or by a value.
    GrammarHandle nilLiteral(const std::string& literals, DelimiterPolicy policy = PIF::MPIFEnums::DP_NONE);
    GrammarHandle nilCharacter(const std::string& literal, DelimiterPolicy policy = PIF::MPIFEnums::DP_NONE);
    GrammarHandle nilLogical(const std::vector<std::string>& values);
    GrammarHandle useNilForDefault();
    GrammarHandle facetMaxLength(int32_t count);
    GrammarHandle facet(PIF::MPIFEnums::MFacetKindEnum kind, const std::string& kindName,
                        const std::string& value);

    // For what has no word here. Parent, child and sequence number are filled in by the builder.
    PIF::MGroupMemberTableRow& row();
    PIF::MElementTableRow& element();

  private:
    static constexpr auto EXPLICIT = PIF::MPIFEnums::EXPLICIT;
    static constexpr auto DELIMITED = PIF::MPIFEnums::DELIMITED;
    static constexpr auto END_OF_PARENT = PIF::MPIFEnums::END_OF_PARENT;
    static constexpr auto BITS = PIF::MPIFEnums::BITS;
    static constexpr auto BYTES = PIF::MPIFEnums::BYTES;
    static constexpr auto CHARACTERS = PIF::MPIFEnums::CHARACTERS;

    GrammarHandle length(PIF::MPIFEnums::MLengthKindEnum kind, PIF::MPIFEnums::MLengthUnitsEnum units,
                         int32_t count);
    GrammarHandle prefixed(PIF::MPIFEnums::MLengthUnitsEnum units, const GrammarHandle& prefix,
                           bool includesItself);
    GrammarHandle trim(const std::string& pad, PIF::MPIFEnums::MTextJustificationEnum justification);
    GrammarHandle occursKind(PIF::MPIFEnums::MOccursCountKindEnum kind);
    GrammarHandle group(PIF::MPIFEnums::MDFDLGroupTypeEnum kind, PIF::MPIFEnums::MPhysicalTypeEnum type);
    GrammarNode* addChild(GrammarNode* child);
    PIF::MAlignmentTableRow* alignmentRow();
    PIF::MTextStringTableRow* textStringRow();
    PIF::MTextMarkupTableRow* markupRow();
    PIF::MNilSchemeTableRow* nilRow();
    GrammarHandle nil(PIF::MPIFEnums::MNilKindEnum kind, const std::string& literals, DelimiterPolicy policy);
    GrammarHandle escape(const PIF::MEscapeSchemeTableRow& scheme);

    friend class GrammarBuilder;

    GrammarBuilder* builder_;
    GrammarNode* node_;
};

// Describes a grammar in a few lines and loads it. Whatever is not said is no row (-1); particles occur once.
class GrammarBuilder {
  public:
    GrammarBuilder();
    GrammarBuilder(const GrammarBuilder&) = delete;
    GrammarBuilder& operator=(const GrammarBuilder&) = delete;

    GrammarHandle complexElement(const std::string& name);                       // global
    GrammarHandle text(const std::string& name);                                 // global
    GrammarHandle number(const std::string& name, const std::string& kindName);  // global
    GrammarHandle textNumber(const std::string& name, const std::string& kindName,
                             const std::string& pattern);  // global
    void variable(const std::string& name, const std::string& kindName, bool external);
    void variable(const std::string& name, const std::string& kindName, bool external,
                  const std::string& defaultValue);

    // The whole message. What is changed here is kept until a handle is used again.
    PIF::MPIF& pif();
    std::string serialize();
    DFDLGrammar* load(DFDLHeap* heap = nullptr);  // the caller's; null, and a word on stderr, on failure

  private:
    friend class GrammarHandle;

    GrammarNode* newNode();
    GrammarNode* newElement(const std::string& name);
    GrammarNode* newGroup(PIF::MPIFEnums::MDFDLGroupTypeEnum kind, PIF::MPIFEnums::MPhysicalTypeEnum type);
    GrammarNode* newComplexElement(const std::string& name);
    GrammarNode* newText(const std::string& name, const std::string& kindName);
    GrammarNode* newBinary(const std::string& name, const std::string& kindName,
                           PIF::MPIFEnums::MPhysicalTypeEnum type);
    GrammarNode* newNumber(const std::string& name, const std::string& kindName);
    GrammarNode* newTextNumber(const std::string& name, const std::string& kindName,
                               const std::string& pattern);
    // Each returns the number of a row. Literals, encodings and escape schemes that are alike share theirs.
    int32_t binaryNumber(PIF::MPIFEnums::MBinaryNumberRepEnum representation);
    int32_t value(const std::string& kindName, const std::string& text);
    int32_t literal(const std::string& text);
    int32_t encoding(const std::string& name);
    int32_t escapeScheme(const PIF::MEscapeSchemeTableRow& scheme);
    PIF::MVariableActionsTableRow* define(const std::string& name, const std::string& kindName,
                                          bool external);

    void emit();
    void emitElement(GrammarNode* node, PIF::MGroupMemberTableRow* row, const std::string& path);
    void emitGroup(GrammarNode* node, PIF::MGroupMemberTableRow* row, const std::string& path);
    void emitMembers(const GrammarNode* node, int32_t groupId, const std::string& path);
    int32_t emitGroupRow(PIF::MPIFEnums::MDFDLGroupTypeEnum kind, const std::string& path);
    int32_t emitSimpleType(const GrammarNode* node);
    void emitFacet(int32_t typeId, int32_t kind, int32_t valueIndex);
    void emitNilValues(const GrammarNode* node, int32_t typeId);
    int32_t emitScd(const std::string& path);

    PIF::MPIF pif_;
    std::deque<GrammarNode> nodes_;
    std::vector<GrammarNode*> globals_;
    bool emitted_ = false;  // the tables of the structure are up to date
};

#endif
