// The journal of a play. Every line goes through here, so that nesting, the reading of `expect` and
// the choice of what is listed are in one place.
#pragma once

#include <string>
#include <string_view>

namespace trace {

// Opens an event: `in TEXT`; until the matching Out, lines stand one level deeper when nested.
void In(std::string_view text);
// Closes the innermost event: `out VERDICT`.
void Out(std::string_view verdict);

// Effects; `text` is what follows the kind word.
void Win(std::string_view text);
void Sdk(std::string_view text);
void Script(std::string_view text);    // the script's text, not yet escaped
void Ini(std::string_view text);       // KEY=TEXT
void Listener(std::string_view text);  // not yet escaped

// Facts that are no effects.
void Got(std::string_view text);
void State(std::string_view text);
void Value(std::string_view text);

// Readers. Ask is costly for its texts: build them only when AsksWanted() says so.
bool AsksWanted();
void Ask(std::string_view call, std::string_view result);

// A message to one of the plug-in's dialogs on its way through: `in TEXT` and `out ANSWER` stand
// one level deeper than what the message sets off, which belongs to the event around it.
void InDialogMessage(std::string_view text);
void OutDialogMessage(std::string_view answer);

// Depth of open events; 0: nothing of the plug-in's is running.
int Depth();

// "text" with quotes, backslashes, tabs, line feeds and carriage returns escaped.
std::string Quoted(std::string_view text);

}  // namespace trace
