#pragma once
#include <string>

/** Text for HTML: what would be markup is escaped, what is no UTF-8 and what controls is left out. */
std::string Escaped(const std::string& inText);

// What stands on the page in more than one place. Sentences, names, values and titles are text, captions and
// contents are HTML.

/** A plug-in's text of a value with the unit, where it does not end with it already; text. */
std::string WithUnit(const std::string& inText, const std::string& inUnit);

std::string Note(const std::string& inSentence);
std::string Figure(const std::string& inCaption, const std::string& inContent);
/** A term of a list of facts. */
std::string Fact(const std::string& inName, const std::string& inValue);
/** The name by which links find the section of that title. */
std::string AnchorOf(const std::string& inTitle);
std::string Section(const std::string& inTitle, const std::string& inContent);
