// The calendar's events and the words for their dates.
#pragma once

/// Returns the short Italian name of a weekday, 0 = Sunday .. 6 = Saturday; any other number gives an empty
/// text. The text stands in one buffer that the next call overwrites.
const char* GetWdayStr(int wday);
