#pragma once
// MivoExplain.exe's output: the "--json" switch taken off its command line, and the
// explanation (one JSON document, version kExplainVersion) put into plain words with the
// launcher's string table.
#include <json/json.h>

#include <string>

#include "toolkit/CString.h"

constexpr int kExplainVersion = 1;

// Removes the first token that is exactly "--json" (outside quotes) with the blanks before it,
// and says whether there was one.
bool TakeJsonSwitch(CString& commandLine);

// The document as lines of text in the loaded table's language (built-in English for an id
// the table lacks).
std::string RenderExplanation(const Json::Value& explanation);

// The text of one of the explanation's ids.
CString ExplainText(const wchar_t* id);
