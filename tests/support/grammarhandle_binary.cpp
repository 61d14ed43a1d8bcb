// What a handle says of binary content.
#include "support/grammarbuilder.h"

using Enums = PIF::MPIFEnums;

GrammarNode* GrammarBuilder::newBinary(const std::string& name, const std::string& kindName,
                                       Enums::MPhysicalTypeEnum type) {
    GrammarNode* node = newElement(name);
    node->kindName = kindName;
    node->row.set_iphysicaltype(type);
    node->row.set_idfdlrepresentation(Enums::REPRESENTATION_BINARY);
    return node;
}

GrammarNode* GrammarBuilder::newNumber(const std::string& name, const std::string& kindName) {
    GrammarNode* node = newBinary(name, kindName, Enums::BINARY_NUMBER);
    node->row.set_iphysicaltypeindex(binaryNumber(Enums::BINARY));
    return node;
}

int32_t GrammarBuilder::binaryNumber(Enums::MBinaryNumberRepEnum representation) {
    PIF::MBinaryNumberTable* table = pif_.mutable_binary_number_table();
    PIF::MBinaryNumberTableRow* number = table->add_row();
    number->set_ibyteorder(Enums::BYTEOR_BIG_ENDIAN);
    number->set_ibinarynumberrepresentation(representation);
    number->set_ibinarydecimalvirtualpoint(0);
    number->set_ipackedsigncodes(-1);
    number->set_ibinaryfloatrepexprindex(-1);
    number->set_ibyteorderexprindex(-1);
    return table->row_size() - 1;
}

GrammarHandle GrammarBuilder::number(const std::string& name, const std::string& kindName) {
    emitted_ = false;
    return {this, globals_.emplace_back(newNumber(name, kindName))};
}

GrammarHandle GrammarHandle::number(const std::string& name, const std::string& kindName) {
    return {builder_, addChild(builder_->newNumber(name, kindName))};
}

GrammarHandle GrammarHandle::truth(const std::string& name, int32_t trueRep, int32_t falseRep) {
    GrammarHandle element(builder_, addChild(builder_->newBinary(name, "BOOLEAN", Enums::BINARY_BOOLEAN)));
    PIF::MBooleanRepTable* table = builder_->pif_.mutable_boolean_rep_table();
    PIF::MBooleanRepTableRow* reps = table->add_row();
    reps->set_iintegerbooleantruerep(trueRep);
    reps->set_iintegerbooleanfalserep(falseRep);
    reps->set_ibyteorder(Enums::BYTEOR_BIG_ENDIAN);
    reps->set_itextbooleantruerepexpindex(-1);
    reps->set_itextbooleanfalserepexpindex(-1);
    reps->set_ibyteorderexprindex(-1);
    element.row().set_iphysicaltypeindex(table->row_size() - 1);
    return element;
}

GrammarHandle GrammarHandle::seconds(const std::string& name, const std::string& kindName,
                                     const std::string& epoch) {
    GrammarHandle element(builder_, addChild(builder_->newBinary(name, kindName, Enums::BINARY_CALENDAR)));
    PIF::MCalendarRepTable* table = builder_->pif_.mutable_calendar_rep_table();
    PIF::MCalendarRepTableRow* count = table->add_row();
    count->set_icalendarformatid(-1);
    count->set_icalendarformatrowindex(-1);
    count->set_itextstringtableindex(-1);
    count->set_ibinarynumbertableindex(builder_->binaryNumber(Enums::BINARY_SECONDS));
    count->set_ibinarycalendarepoch(epoch);
    count->set_ibyteorder(Enums::BYTEOR_BIG_ENDIAN);
    count->set_ibyteorderexprindex(-1);
    element.row().set_iphysicaltypeindex(table->row_size() - 1);
    return element.bytes(4);
}

GrammarHandle GrammarHandle::opaque(const std::string& name) {
    return {builder_, addChild(builder_->newBinary(name, "HEXBINARY", Enums::BINARY_OPAQUE))};
}

GrammarHandle GrammarHandle::littleEndian() {
    builder_->pif_.mutable_binary_number_table()
        ->mutable_row(row().iphysicaltypeindex())
        ->set_ibyteorder(Enums::BYTEOR_LITTLE_ENDIAN);
    return *this;
}

GrammarHandle GrammarHandle::packed() {
    PIF::MBinaryNumberTableRow* number =
        builder_->pif_.mutable_binary_number_table()->mutable_row(row().iphysicaltypeindex());
    number->set_ibinarynumberrepresentation(Enums::PACKED);
    number->set_ipackedsigncodes(0xCDFC);
    return *this;
}

GrammarHandle GrammarHandle::prefixed(Enums::MLengthUnitsEnum units, const GrammarHandle& prefix,
                                      bool includesItself) {
    length(Enums::PREFIXED, units, -1);
    builder_->pif_.mutable_length_scheme_table()
        ->mutable_row(row().ilengthschemeid() - 1)
        ->set_iprefixincludesprefixlength(includesItself);
    node_->prefix = prefix.node_;
    return *this;
}
