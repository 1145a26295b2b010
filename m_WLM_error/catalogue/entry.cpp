#include "m_WLM_error/catalogue/entry.h"

#include <algorithm>

#include "m_WLM_error/catalogue/guideline_groups.h"
#include "m_WLM_error/catalogue/inflow_groups.h"
#include "m_WLM_error/catalogue/network_groups.h"
#include "m_WLM_error/catalogue/profile_groups.h"
#include "m_WLM_error/catalogue/system_groups.h"
#include "m_WLM_error/catalogue/tables_groups.h"
#include "runtime/fixed_text.h"

namespace m_WLM_error::catalogue {
namespace {

// Longer prefixes stand before the shorter ones that they begin with.
constexpr std::array routing = {&A_group,   &B_group, &C_group, &D_group,   &E_group,   &F_group,
                                &G_group,   &I_group, &J_group, &K_group,   &LF_group,  &mnn_group,
                                &M_group,   &P_group, &Q_group, &Rt_group,  &R_group,   &St_group,
                                &S_group,   &T_group, &U_group, &Ver_group, &Vkl_group, &V_group,
                                &Whr_group, &W_group, &Y_group, &ZW_group};

bool selects(const Entry& row, const Values& values) {
  if (row.continues || !runtime::equal_padded(row.code, values.code)) return false;
  return row.condition_word.empty() || values.text(row.condition) == row.condition_word;
}

}  // namespace

std::span<const Group* const> groups() {
  return routing;
}

const Group* group_of(std::string_view code) {
  const auto* const found =
      std::ranges::find_if(routing, [&](const Group* group) { return code.starts_with(group->prefix); });
  return found == routing.end() ? nullptr : *found;
}

runtime::Value Values::value(Argument argument) const {
  const auto place = static_cast<std::size_t>(argument);
  switch (kind_of(argument)) {
    case runtime::Value::Kind::text:
      return texts[place];
    case runtime::Value::Kind::integer:
      return integers[place - static_cast<std::size_t>(int1)];
    case runtime::Value::Kind::real:
      break;
  }
  return reals[place - static_cast<std::size_t>(real1)];
}

std::span<const Entry> find_entry(const Group& group, const Values& values) {
  const auto begin =
      std::ranges::find_if(group.entries, [&](const Entry& row) { return selects(row, values); });
  if (begin == group.entries.end()) return {};
  const auto end =
      std::find_if(begin + 1, group.entries.end(), [](const Entry& row) { return !row.continues; });
  return {begin, end};
}

}  // namespace m_WLM_error::catalogue
