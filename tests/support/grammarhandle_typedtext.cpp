// What a handle says of numbers and calendars that are texts.
#include "support/grammarbuilder.h"

using Enums = PIF::MPIFEnums;

GrammarHandle GrammarHandle::textNumber(const std::string& name, const std::string& kindName,
                                        const std::string& pattern) {
    GrammarHandle element(builder_, addChild(builder_->newText(name, kindName)));
    PIF::MTextNumberTable* table = builder_->pif_.mutable_text_number_table();
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
    element.row().set_iphysicaltype(Enums::TEXT_NUMBER);
    element.row().set_iphysicaltypetablerowid(table->row_size());
    return element;
}

PIF::MTextNumberTableRow& GrammarHandle::numberRow() {
    return *builder_->pif_.mutable_text_number_table()->mutable_row(row().iphysicaltypetablerowid() - 1);
}

GrammarHandle GrammarHandle::textCalendar(const std::string& name, const std::string& kindName,
                                          const std::string& pattern) {
    GrammarHandle element(builder_, addChild(builder_->newText(name, kindName)));
    PIF::MCalendarFormatTable* formats = builder_->pif_.mutable_calendar_format_table();
    PIF::MCalendarFormatTableRow* format = formats->add_row();
    format->set_itextcalendarid(formats->row_size());
    format->set_icalendarpattern(pattern);
    format->set_icalendarstrictchecking(true);
    format->set_icalendarusezforutc(Enums::NEVER);
    format->set_icalendardaysinfirstweek(4);
    format->set_icalendarcenturystart(53);
    format->set_icalendarlanguage("en");
    PIF::MCalendarRepTable* reps = builder_->pif_.mutable_calendar_rep_table();
    PIF::MCalendarRepTableRow* rep = reps->add_row();
    rep->set_icalendarformatid(formats->row_size());
    rep->set_icalendarformatrowindex(-1);
    rep->set_itextstringtableindex(element.row().itextstringindex());
    rep->set_ibinarynumbertableindex(-1);
    rep->set_ibyteorder(Enums::BYTEOR_BIG_ENDIAN);
    rep->set_ibyteorderexprindex(-1);
    element.row().set_iphysicaltype(Enums::TEXT_CALENDAR);
    element.row().set_iphysicaltypeindex(reps->row_size() - 1);
    return element;
}

PIF::MCalendarFormatTableRow& GrammarHandle::calendarRow() {
    const PIF::MCalendarRepTableRow& rep =
        builder_->pif_.calendar_rep_table().row(row().iphysicaltypeindex());
    return *builder_->pif_.mutable_calendar_format_table()->mutable_row(rep.icalendarformatid() - 1);
}
