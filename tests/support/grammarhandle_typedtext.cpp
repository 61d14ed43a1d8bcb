// What a handle says of numbers and calendars that are texts.
#include "support/grammarbuilder.h"

using Enums = PIF::MPIFEnums;

GrammarNode* GrammarBuilder::newTextNumber(const std::string& name, const std::string& kindName,
                                           const std::string& pattern) {
    GrammarNode* element = newText(name, kindName);
    PIF::MTextNumberTable* table = pif_.mutable_text_number_table();
    PIF::MTextNumberTableRow* number = table->add_row();
    number->set_itextnumberid(table->row_size());
    number->set_inumberpattern(pattern);
    number->set_inumberbase(Enums::_10);
    number->set_inumbergroupingseparator(",");
    number->set_inumberdecimalseparator(".");
    number->set_inumberexponentcharacter("E");
    number->set_inumbergroupingsepexprindex(-1);
    number->set_inumberdecimalsepexprindex(-1);
    number->set_inumberexponentcharexprindex(-1);
    number->set_idecimalsigned(true);
    number->set_ivirtualdecimalindex(-1);
    number->set_isubpatternboudaryindex(-1);
    number->set_inegativevirtualdecimalindex(-1);
    element->row.set_iphysicaltype(Enums::TEXT_NUMBER);
    element->row.set_iphysicaltypetablerowid(table->row_size());
    return element;
}

GrammarHandle GrammarBuilder::textNumber(const std::string& name, const std::string& kindName,
                                         const std::string& pattern) {
    emitted_ = false;
    return {this, globals_.emplace_back(newTextNumber(name, kindName, pattern))};
}

GrammarHandle GrammarHandle::textNumber(const std::string& name, const std::string& kindName,
                                        const std::string& pattern) {
    return {builder_, addChild(builder_->newTextNumber(name, kindName, pattern))};
}

PIF::MTextNumberTableRow& GrammarHandle::numberRow() {
    return *builder_->pif_.mutable_text_number_table()->mutable_row(row().iphysicaltypetablerowid() - 1);
}

namespace {

// A row of calendars with a format of its own; both are the last of their tables.
PIF::MCalendarRepTableRow* addCalendar(PIF::MPIF& pif, const std::string& pattern) {
    PIF::MCalendarFormatTable* formats = pif.mutable_calendar_format_table();
    PIF::MCalendarFormatTableRow* format = formats->add_row();
    format->set_itextcalendarid(formats->row_size());
    format->set_icalendarpattern(pattern);
    format->set_icalendarstrictchecking(true);
    format->set_icalendarusezforutc(Enums::NEVER);
    format->set_icalendardaysinfirstweek(4);
    format->set_icalendarcenturystart(53);
    format->set_icalendarlanguage("en");
    PIF::MCalendarRepTableRow* rep = pif.mutable_calendar_rep_table()->add_row();
    rep->set_icalendarformatid(formats->row_size());
    rep->set_icalendarformatrowindex(-1);
    rep->set_itextstringtableindex(-1);
    rep->set_ibinarynumbertableindex(-1);
    rep->set_ibyteorder(Enums::BYTEOR_BIG_ENDIAN);
    rep->set_ibyteorderexprindex(-1);
    return rep;
}

}  // namespace

GrammarHandle GrammarHandle::textCalendar(const std::string& name, const std::string& kindName,
                                          const std::string& pattern) {
    GrammarHandle element(builder_, addChild(builder_->newText(name, kindName)));
    addCalendar(builder_->pif_, pattern)->set_itextstringtableindex(element.row().itextstringindex());
    element.row().set_iphysicaltype(Enums::TEXT_CALENDAR);
    element.row().set_iphysicaltypeindex(builder_->pif_.calendar_rep_table().row_size() - 1);
    return element;
}

GrammarHandle GrammarHandle::packedCalendar(const std::string& name, const std::string& kindName,
                                            const std::string& pattern,
                                            Enums::MBinaryNumberRepEnum representation, bool isLittle) {
    GrammarHandle element(builder_, addChild(builder_->newBinary(name, kindName, Enums::BINARY_CALENDAR)));
    const int32_t number = builder_->binaryNumber(representation);
    if (isLittle) {
        builder_->pif_.mutable_binary_number_table()->mutable_row(number)->set_ibyteorder(
            Enums::BYTEOR_LITTLE_ENDIAN);
    }
    addCalendar(builder_->pif_, pattern)->set_ibinarynumbertableindex(number);
    element.row().set_iphysicaltypeindex(builder_->pif_.calendar_rep_table().row_size() - 1);
    return element;
}

PIF::MCalendarFormatTableRow& GrammarHandle::calendarRow() {
    const PIF::MCalendarRepTableRow& rep =
        builder_->pif_.calendar_rep_table().row(row().iphysicaltypeindex());
    return *builder_->pif_.mutable_calendar_format_table()->mutable_row(rep.icalendarformatid() - 1);
}
