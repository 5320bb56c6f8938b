#include "execution/WeeklyPlan.h"

#include "execution/Form7.h"

namespace execution {

// The token writing of the chart comes with the weekly plan's own work. Until then a
// save leaves the machine's row as it was made (keys and names, empty weeks).

void Update_Planned_Row(Form7&) {}

void Clear_Planned_Tokens(Form7&) {}

} // namespace execution
