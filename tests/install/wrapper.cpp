// A grammar made in memory by a program that has the installed headers and nothing else. Tells its result
// code.
#include <dfdl/pifwrapper.h>

int main() {
    PIFWrapper::MPIF grammar;
    auto globals = grammar.mutable_pif_globals_table()->add_row();
    globals.set_pifversion(41);  // of a format to come: refused for its version, so it was read
    int code = -1;
    delete_DFDLGrammar(new_DFDLGrammarFromPIFWrapper(nullptr, &grammar, nullptr, &code));
    if (code != DFDL_GRAMMAR_VERSION) return 1;
    globals.set_pifversion(40);
    delete_DFDLGrammar(new_DFDLGrammarFromPIFWrapper(nullptr, &grammar, nullptr, &code));
    return code == DFDL_GRAMMAR_LOADED ? 0 : 2;
}
