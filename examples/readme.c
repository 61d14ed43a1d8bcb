/* Prints the texts and natural numbers of a message: readme GRAMMAR.pif ROOT FILE */
#include <dfdl/dfdl.h>
#include <stdio.h>

static void show(const char* before, const DFDLChar* text, int32_t length) { /* enough for ASCII */
    printf("%s", before);
    for (int32_t i = 0; i < length && text[i] != 0; i++) putchar(text[i] < 128 ? text[i] : '?');
}
static void startElement(DFDLDocHandler* handler, int32_t id, const DFDLChar* name, int32_t namespaceId,
                         const DFDLChar* namespaceUri, const DFDLChar* designator, DFDLWORD startBit) {
    (void)handler, (void)id, (void)namespaceId, (void)namespaceUri, (void)designator, (void)startBit;
    show("\n", name, INT32_MAX);
}
static void stringValue(DFDLDocHandler* handler, const DFDLChar* text, int32_t length, uint32_t type) {
    (void)handler, (void)type;
    show(" = ", text, length);
}
static void numberValue(DFDLDocHandler* handler, uint64_t number, uint32_t type) {
    (void)handler, (void)type;
    printf(" = %llu", (unsigned long long)number);
}
static void error(DFDLErrorHandler* handler, const DFDLDiagnostic* diagnostic) {
    const DFDLChar* text;
    int32_t length;
    (void)handler;
    DFDLDiagnostic_getSummary(diagnostic, &text, &length);
    show("\nerror: ", text, length);
}
int main(int argc, char** argv) {
    static uint8_t data[1 << 20];
    DFDLChar root[64] = {0};
    int result = 0;
    FILE* file = argc == 4 ? fopen(argv[3], "rb") : NULL;
    if (file == NULL) return 2;
    size_t size = fread(data, 1, sizeof data, file);
    fclose(file);
    for (int i = 0; i < 63 && argv[2][i] != 0; i++) root[i] = (DFDLChar)argv[2][i];
    DFDLGrammar* grammar = new_DFDLGrammarFromFile(NULL, argv[1], NULL, &result);
    if (grammar == NULL) return 3;
    DFDLDocHandler* document = new_DFDLDocHandler();
    DFDLDocHandler_setStartElementCallback(document, startElement);
    DFDLDocHandler_setElementStringValueCallback(document, stringValue);
    DFDLDocHandler_setElementULongValueCallback(document, numberValue);
    DFDLErrorHandler* errors = new_DFDLErrorHandler();
    DFDLErrorHandler_setProcessingErrorCallback(errors, error);
    DFDLParser* parser = new_DFDLParser(NULL);
    DFDLParser_setGrammar(parser, grammar);
    DFDLParser_setDocumentHandler(parser, document);
    DFDLParser_setErrorHandler(parser, errors);
    DFDLParser_setRootElement(parser, root, NULL);
    DFDLParser_setFeature(parser, DFDL_FEATURE_IGNORE_TRAILING_DATA, 1);
    DFDLParser_setInputDocument(parser, data, (DFDLWORD)size);
    int parsed = DFDLParser_parseAll(parser, &result);
    delete_DFDLParser(parser);
    delete_DFDLErrorHandler(errors);
    delete_DFDLDocHandler(document);
    delete_DFDLGrammar(grammar);
    return parsed ? 0 : 1;
}
