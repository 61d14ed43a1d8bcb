#ifndef DFDL_TESTS_SUPPORT_MEMBERROW_H
#define DFDL_TESTS_SUPPORT_MEMBERROW_H

#include "pif.pb.h"

// One occurrence of nothing: a member row whose references all stand for none, as a field that is absent
// would refer to row 0.
inline void MemberRow_clear(PIF::MGroupMemberTableRow* row) {
    row->set_parent_group_id(-1);
    row->set_sequence_number(1);
    row->set_child_element_id(-1);
    row->set_child_group_id(-1);
    row->set_min_occurs(1);
    row->set_max_occurs(1);
    row->set_ilengthschemeid(-1);
    row->set_itextstringindex(-1);
    row->set_ialignmentid(-1);
    row->set_itextmarkupid(-1);
    row->set_iphysicaltypeindex(-1);
    row->set_iphysicaltypetablerowid(-1);
    row->set_itextencodingindex(-1);
    row->set_ifirstvariableactionid(-1);
    row->set_ifirstparserstateindex(-1);
    row->set_ifirstassertindex(-1);
    row->set_iouputvaluecalcexprindex(-1);
    row->set_iinputvaluecalcexprindex(-1);
    row->set_inilschemeindex(-1);
    row->set_ioccursschemetableindex(-1);
}

#endif
