// The run state's variables, with their values before the first run.
#include "run/run_state.h"

HashTable *CalledNames;
HashTable *DefinedNames;
HashTable *KnownVariables;
char *OutputText;

int32_t UsesArrayTools;
int32_t UsesLinearAlgebra;
int32_t FileMode = 1;
int32_t AddTranslator = 1;
int32_t KeepGoing;
int32_t Displays;

SearchDirectory *SearchPath;
mProc *CurrentProc;
int32_t ResolutionDepth;
const char *InputFileName;
