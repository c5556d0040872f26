#pragma once
#include <functional>

/**
 * Does the work of a command in a process of its own, with this one's standard files, and says on the
 * standard error how it ended where it did not come to its end: what a plug-in does to its process is told
 * with a sentence and exit code 1.
 *
 * @param inWork no exception leaves it. @return its exit code.
 */
int RunInOwnProcess(const std::function<int()>& inWork);
