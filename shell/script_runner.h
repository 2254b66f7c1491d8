#pragma once

// Has MAXScript evaluate a text (writable, because the host's call wants it so; it is not changed).
// Nothing happens before the plug-in has been started. Errors are the script's own.
void RunScript(char* text);
