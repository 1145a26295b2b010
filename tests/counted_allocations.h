#pragma once

/// Counts the allocations of a test program and lets some of them fail. The program is linked with
/// `--wrap=malloc,--wrap=calloc`; `new` is counted as well.
namespace counted_allocations {

/// From now on allocations are counted, and those from the n-th to the last one given fail (0: none).
void begin(int first_refused, int last_refused);
/// Ends the counting; the number of allocations since it began.
int end();

}  // namespace counted_allocations
