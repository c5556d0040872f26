#pragma once
#include <string>

/** What is executed between the two is counted by whatever runs this program, under the name of the second.
 */
void BeginCount();
void EndCount(const std::string& inName);
