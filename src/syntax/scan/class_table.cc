// Classes of bytes.
#include "syntax/scan/class_table.h"

namespace {

constexpr ByteClass XX = BYTE_INVALID;
constexpr ByteClass EN = BYTE_END;
constexpr ByteClass BL = BYTE_BLANK;
constexpr ByteClass LI = BYTE_LINE;
constexpr ByteClass LE = BYTE_LETTER;
constexpr ByteClass DI = BYTE_DIGIT;
constexpr ByteClass QU = BYTE_QUOTE;
constexpr ByteClass DQ = BYTE_DOUBLE_QUOTE;
constexpr ByteClass CO = BYTE_COMMENT;
constexpr ByteClass DO = BYTE_DOT;
constexpr ByteClass OP = BYTE_OPEN;
constexpr ByteClass CL = BYTE_CLOSE;
constexpr ByteClass SE = BYTE_SEMICOLON;
constexpr ByteClass CM = BYTE_COMMA;
constexpr ByteClass EQ = BYTE_EQUALS;
constexpr ByteClass NO = BYTE_NOT;
constexpr ByteClass AT = BYTE_AT;
constexpr ByteClass QM = BYTE_QUESTION;
constexpr ByteClass OR = BYTE_OPERATOR;

}  // namespace

// clang-format off
const ByteClass ByteClasses[256] = {
    EN, XX, XX, XX, XX, XX, XX, XX, XX, BL, LI, BL, BL, LI, XX, XX,
    XX, XX, XX, XX, XX, XX, XX, XX, XX, XX, XX, XX, XX, XX, XX, XX,
//       !   "   #   $   %   &   '   (   )   *   +   ,   -   .   /
    BL, NO, DQ, CO, XX, CO, OR, QU, OP, CL, OR, OR, CM, OR, DO, OR,
//  0                                       :   ;   <   =   >   ?
    DI, DI, DI, DI, DI, DI, DI, DI, DI, DI, OR, SE, OR, EQ, OR, QM,
//  @
    AT, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE,
//                                              [   \   ]   ^   _
    LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, OP, OR, CL, OR, LE,
//  `
    XX, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE,
//                                              {   |   }   ~
    LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, LE, OP, OR, CL, NO, XX,
};
// clang-format on
