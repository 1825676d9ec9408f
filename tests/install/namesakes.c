/* Variables of a host's own that are called as the library's, in types of their own. Linked into a
 * host they must come through its run untouched. With HOST, the path of a host as a shared object,
 * this is a program that loads it, and the library with it, at run time. */
#include <unistd.h>

long BracketDelimiter = 1, LastComment = 2, InputSequence = 3, yychar = 4, yylval = 5;
long yynerrs = 6, SourceLine = 7, SourcePos = 8, SourceText = 9, PrevLine = 10;
long RequestedResults = 11;

__attribute__((destructor)) static void check_namesakes(void) {
    const long values[] = {BracketDelimiter, LastComment, InputSequence,   yychar,
                           yylval,           yynerrs,     SourceLine,      SourcePos,
                           SourceText,       PrevLine,    RequestedResults};
    for (long i = 0; i < 11; i++)
        if (values[i] != i + 1) _exit(4); /* before anything is printed */
}

#ifdef HOST
#include <dlfcn.h>

int main(void) {
    void *host = dlopen(HOST, RTLD_NOW);
    if (!host) return 3;
    union {
        void *address;
        int (*call)(void);
    } entry = {dlsym(host, "main")};
    return entry.call();
}
#endif
