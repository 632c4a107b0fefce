#pragma once

/** The memory that this process has now, without what it has freed, in bytes; 0 where the system
 * doesn't tell. */
[[nodiscard]] double benchMemory();

/** The highest it has been since the last resetBenchPeakMemory(), or since it began. */
[[nodiscard]] double benchPeakMemory();
void resetBenchPeakMemory();
