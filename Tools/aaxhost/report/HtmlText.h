#pragma once
#include <string>

/** Text for HTML: what would be markup is escaped, what is no UTF-8 and what controls is left out. */
std::string Escaped(const std::string& inText);

// What stands on the page in more than one place. Sentences, names, values and titles are text, captions and
// contents are HTML.

std::string Note(const std::string& inSentence);
std::string Figure(const std::string& inCaption, const std::string& inContent);
/** A term of a list of facts. */
std::string Fact(const std::string& inName, const std::string& inValue);
std::string Section(const std::string& inTitle, const std::string& inContent);
