#include "SkinEngine/Formula/FormulaTree.h"

#include <cstdlib>
#include <cstring>
#include <type_traits>

// They define each token's name as a macro, so they come last.
#include <FormulaLexer.h>
#include <FormulaParser.h>

namespace Lathe::AppEngine {

namespace {

struct SFree {
    void operator()(pANTLR3_INPUT_STREAM stream) const { stream->close(stream); }
    template <class TRecognizer>
    void operator()(TRecognizer recognizer) const {
        recognizer->free(recognizer);
    }
};

template <class TPointer>
using TOwner = std::unique_ptr<std::remove_pointer_t<TPointer>, SFree>;

// A character that begins no token is left out; of a token that breaks off, what it has so far.
// The runtime's own way would leave out the next characters too, which may begin a token.
void LeaveOutBrokenToken(pANTLR3_LEXER lexer) {
    if (lexer->getCharIndex(lexer) == lexer->rec->state->tokenStartCharIndex)
        lexer->input->istream->consume(lexer->input->istream);
}

// The runtime's words for an error would stand among those of a program, which says in words of its
// own that it got no tree. Only builds for looking into the parser have them.
void SetUpErrors([[maybe_unused]] pANTLR3_BASE_RECOGNIZER recognizer) {
#if !defined(CAIRN_PARSER_TELLS_ERRORS)
    recognizer->displayRecognitionError = [](pANTLR3_BASE_RECOGNIZER, pANTLR3_UINT8*) {};
#endif
}

pANTLR3_INPUT_STREAM NewInput(std::string_view text) {
    // The stream reads both texts where they lie, and never writes to them.
    const auto toBytes = [](const char* bytes) {
        return reinterpret_cast<pANTLR3_UINT8>(const_cast<char*>(bytes));
    };
    return antlr3StringStreamNew(toBytes(text.data()), ANTLR3_ENC_8BIT,
                                 static_cast<ANTLR3_UINT32>(text.size()), toBytes("formula"));
}

pFormulaLexer NewLexer(pANTLR3_INPUT_STREAM input) {
    const pFormulaLexer lexer = FormulaLexerNew(input);
    SetUpErrors(lexer->pLexer->rec);
    lexer->pLexer->recover = LeaveOutBrokenToken;
    return lexer;
}

pFormulaParser NewParser(pANTLR3_COMMON_TOKEN_STREAM tokens) {
    const pFormulaParser parser = FormulaParserNew(tokens);
    SetUpErrors(parser->pParser->rec);
    return parser;
}

// The recognizers take some 600 KiB for each formula. Until the allocator has seen a larger block
// come and go, it would give these back to the system each time, and fault them in again page by
// page: formula/build takes a tenth of the time.
void ShowLargeBlock() {
    void* volatile block = std::malloc(std::size_t{1} << 20);
    std::free(block);
}

// Whether the parentheses come in pairs that nest no deeper than told.
bool CheckParentheses(pANTLR3_COMMON_TOKEN_STREAM tokens, int maxDepth) {
    // Reads the whole text.
    tokens->tstream->_LT(tokens->tstream, 1);
    int depth = 0;
    for (ANTLR3_UINT32 i = 0; i < tokens->tokens->count; ++i) {
        const auto token =
            static_cast<pANTLR3_COMMON_TOKEN>(tokens->tokens->get(tokens->tokens, i));
        if (token->type == T__31)
            ++depth;
        else if (token->type == T__32)
            --depth;
        if (depth < 0 || depth > maxDepth)
            return false;
    }
    return depth == 0;
}

} // namespace

// Freed in the opposite order.
struct CFormulaTree::SRecognizers {
    explicit SRecognizers(std::string_view formula)
        : m_Input(NewInput(formula)),
          m_Lexer(NewLexer(m_Input.get())),
          m_Tokens(antlr3CommonTokenStreamSourceNew(ANTLR3_SIZE_HINT, TOKENSOURCE(m_Lexer))),
          m_Parser(NewParser(m_Tokens.get())) {}

    TOwner<pANTLR3_INPUT_STREAM> m_Input;
    TOwner<pFormulaLexer> m_Lexer;
    TOwner<pANTLR3_COMMON_TOKEN_STREAM> m_Tokens;
    TOwner<pFormulaParser> m_Parser;
};

EFormulaToken CFormulaNode::GetToken() const {
    return static_cast<EFormulaToken>(m_Node->getType(m_Node));
}

std::string_view CFormulaNode::GetText() const {
    const pANTLR3_COMMON_TOKEN token = m_Node->getToken(m_Node);
    if (!token)
        return {};
    if (token->textState == ANTLR3_TEXT_CHARP) // Of a token that the grammar adds.
        return reinterpret_cast<const char*>(token->tokText.chars);
    // The runtime's positions are addresses, of the first and of the last character.
    const auto text = static_cast<const char*>(token->input->data);
    return {text + (token->start - reinterpret_cast<ANTLR3_MARKER>(text)),
            static_cast<std::size_t>(token->stop - token->start + 1)};
}

int CFormulaNode::GetChildCount() const {
    return static_cast<int>(m_Node->getChildCount(m_Node));
}

CFormulaNode CFormulaNode::GetChild(int index) const {
    return CFormulaNode(*static_cast<pANTLR3_BASE_TREE>(
        m_Node->getChild(m_Node, static_cast<ANTLR3_UINT32>(index))));
}

CFormulaTree::CFormulaTree(const char* formula, int maxParentheses) {
    const std::size_t length = strnlen(formula, MaxFormulaLength + 1);
    if (length > MaxFormulaLength)
        return;
    [[maybe_unused]] static const bool isShown = (ShowLargeBlock(), true);
    m_Recognizers = std::make_unique<SRecognizers>(std::string_view(formula, length));
    if (!CheckParentheses(m_Recognizers->m_Tokens.get(), maxParentheses))
        return;
    const pFormulaParser parser = m_Recognizers->m_Parser.get();
    const auto parsed = parser->formula(parser);
    if (parser->pParser->rec->state->errorCount == 0 && parsed.tree)
        m_Root.emplace(*parsed.tree);
}

CFormulaTree::~CFormulaTree() = default;

} // namespace Lathe::AppEngine
