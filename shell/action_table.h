#pragma once

class ActionTable;

// A new action table with all commands of this host release, its context registered. Also takes
// note of the host's release. The host owns the table and may ask for it more than once.
ActionTable* BuildKarvelActionTable();
