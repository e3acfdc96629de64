// The language of formulas: operators in order of rising precedence, each associative to the left,
// over numbers, names and calls. The input is a string of bytes, one a character.
grammar Formula;

options {
    language = C;
    output = AST;
    ASTLabelType = pANTLR3_BASE_TREE;
    // The types of the nodes have fixed numbers.
    tokenVocab = FormulaVocabulary;
    k = 2;
}

tokens {
    // Roots of a name that is used as a value, and of a minus in front of one.
    PARAM;
    NEGATE;
}

formula : logicalExpression EOF! ;

logicalExpression : andExpression (OR^ andExpression)* ;

andExpression : equalityExpression (AND^ equalityExpression)* ;

equalityExpression
    : relationalExpression ((EQUALS^ | NOTEQUALS^) relationalExpression)*
    ;

relationalExpression
    : additiveExpression ((LTH^ | LTEQ^ | GT^ | GTEQ^) additiveExpression)*
    ;

additiveExpression
    : multiplicativeExpression ((PLUS^ | MINUS^) multiplicativeExpression)*
    ;

multiplicativeExpression : powerExpression ((MULT^ | DIV^ | MOD^) powerExpression)* ;

powerExpression : unaryExpression (POW^ unaryExpression)* ;

unaryExpression
    : primaryExpression
    | NOT^ primaryExpression
    | MINUS primaryExpression -> ^(NEGATE primaryExpression)
    ;

primaryExpression
    : '('! logicalExpression ')'!
    | value
    ;

value
    : INTEGER
    | FLOAT
    | DATETIME
    | BOOLEAN
    | STRING
    | functionCall
    | parameter
    ;

parameter : IDENT -> ^(PARAM IDENT) ;

functionCall : IDENT^ '('! (logicalExpression (','! logicalExpression)*)? ')'! ;

STRING
    : '\'' (EscapeSequence | ~('\u0000'..'\u001F' | '\\' | '\''))* '\''
    ;
OR : '||' | 'or' ;
AND : '&&' | 'and' ;
EQUALS : '=' | '==' ;
NOTEQUALS : '!=' | '<>' ;
LTH : '<' ;
LTEQ : '<=' ;
GT : '>' ;
GTEQ : '>=' ;
PLUS : '+' ;
MINUS : '-' ;
MULT : '*' ;
DIV : '/' ;
MOD : '%' ;
POW : '^' ;
NOT : '!' | 'not' ;
INTEGER : '0'..'9'+ ;
FLOAT : '0'..'9'* '.' '0'..'9'+ ;
DATETIME : '#' (~'#')* '#' ;
BOOLEAN : 'true' | 'false' ;
IDENT
    : ('A'..'Z' | 'a'..'z' | '_' | '$') ('A'..'Z' | 'a'..'z' | '0'..'9' | '_' | '$' | '.')*
    ;

fragment EscapeSequence
    : '\\' ('n' | 'r' | 't' | '\'' | '\\' | UnicodeEscape)
    ;
fragment UnicodeEscape : 'u' HexDigit HexDigit HexDigit HexDigit ;
fragment HexDigit : '0'..'9' | 'a'..'f' | 'A'..'F' ;

WS : (' ' | '\t' | '\n' | '\f' | '\r') { $channel = HIDDEN; } ;

// The literals of the rules above, which have no names of their own.
T__31 : '(' ;
T__32 : ')' ;
T__33 : ',' ;
