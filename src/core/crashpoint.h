#pragma once

namespace pg {

// The points of the program where a crash would leave work half done: just before and
// just after each commit of the local database and each rewrite of a suite's record.
// Each passage is counted. When the environment variable PAGAMENTI_TEST_CRASH_AT holds a
// number N, the process is killed outright (as by a power cut: no clean-up of any kind)
// at the N-th passage, so that tests can stop a real run at any of these points and check
// what the next start makes of it. Without the variable a passage only counts.
void crashPoint();

// The passages counted so far in this process.
long long crashPointsPassed();

} // namespace pg
