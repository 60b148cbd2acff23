// Where each group of verbs is added to the program.
#pragma once

namespace trs::ctl {

class Program;

void addOfflineVerbs(Program& program);      // list, describe
void addCallVerbs(Program& program);         // get, set, call, walk
void addTreeVerb(Program& program);          // tree
void addNotificationVerbs(Program& program); // watch, wait
void addTrafficVerbs(Program& program);      // trace, capture, decode, stats, dissector
void addSnapshotVerbs(Program& program);     // snapshot, diff
void addCompletionVerbs(Program& program);   // completion
void addBatchVerb(Program& program);         // batch
void addShellVerb(Program& program);         // shell
void addBenchVerb(Program& program);         // bench

} // namespace trs::ctl
