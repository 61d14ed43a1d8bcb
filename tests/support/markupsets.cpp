#include "support/markupsets.h"

#include <cstdint>
#include <map>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using Rows = std::vector<int32_t>;
using Pair = std::pair<int32_t, int32_t>;

auto endingOf(const PIF::MTextMarkupTableRow& row) {
    return std::make_tuple(row.iterminatorindex(), row.iterminatorexprindex(), row.iseparatorindex(),
                           row.iseparatorexprindex(), row.iignorecase(), row.iescapeschemeindex(),
                           row.ioutputnewline(), row.ioutputnewlineexprindex(), row.itextencodingindex());
}

// The numbers that the library gives to the rows of markup when it loads them: rows that end a component
// alike share one.
Rows numberEndings(const PIF::MTextMarkupTable& table) {
    std::map<decltype(endingOf(table.row(0))), int32_t> numbers;
    Rows endings;
    for (const PIF::MTextMarkupTableRow& row : table.row()) {
        endings.push_back(
            numbers.try_emplace(endingOf(row), static_cast<int32_t>(numbers.size())).first->second);
    }
    return endings;
}

// Follows the walk down the groups and gives each pair of enclosing set and ending a row.
class SetFinder {
  public:
    explicit SetFinder(PIF::MPIF* pif) : pif_(pif), endings_(numberEndings(pif->text_markup_table())) {
        for (int32_t member = 0; member < pif->group_member_table().row_size(); ++member) {
            members_[pif->group_member_table().row(member).parent_group_id()].push_back(member);
        }
    }

    void fill() {
        pif_->clear_markupset_table();
        for (const int32_t member : members_[-1]) visit(member, -1);
    }

  private:
    void visit(int32_t member, int32_t parentSet) {
        if (!seen_.insert({member, parentSet}).second) return;
        const PIF::MGroupMemberTableRow& row = pif_->group_member_table().row(member);
        const int32_t set = setOf(parentSet, row.itextmarkupid() - 1);
        const int32_t group = row.child_group_id();
        if (group == -1 || !open_.insert(group).second) return;
        for (const int32_t child : members_[group]) visit(child, set);
        open_.erase(group);
    }

    int32_t setOf(int32_t parentSet, int32_t markup) {
        const bool hasMarkup = markup >= 0 && markup < pif_->text_markup_table().row_size();
        const int32_t ending = hasMarkup ? endings_[static_cast<size_t>(markup)] : -1;
        if (parentSet == -1 && ending == -1) return -1;
        const int32_t next = static_cast<int32_t>(sets_.size());
        const auto [found, isNew] = sets_.try_emplace({parentSet, ending}, next);
        if (isNew) {
            PIF::MMarkupSetTableRow* row = pif_->mutable_markupset_table()->add_row();
            row->set_imarkupsetid(next);
            row->set_iparentmarkupsetid(parentSet);
            row->set_itextmarkuptableid(hasMarkup ? markup : -1);
            row->set_iterminatingmarkupsetid(ending);
        }
        return found->second;
    }

    PIF::MPIF* pif_;
    Rows endings_;                     // by row of markup
    std::map<int32_t, Rows> members_;  // by group; those of -1 are the global elements
    std::map<Pair, int32_t> sets_;
    std::set<Pair> seen_;     // members in a context
    std::set<int32_t> open_;  // groups that the walk is in
};

}  // namespace

void fillMarkupSets(PIF::MPIF* pif) { SetFinder(pif).fill(); }
