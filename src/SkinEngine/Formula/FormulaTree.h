// The text of a formula as a tree of its operations, names and numbers.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

struct ANTLR3_BASE_TREE_struct;

namespace Lathe::AppEngine {

// What a node stands for, in the numbers of the grammar's vocabulary.
enum class EFormulaToken {
    PARAM = 4,
    NEGATE = 5,
    STRING = 6,
    OR = 7,
    AND = 8,
    EQUALS = 9,
    NOTEQUALS = 10,
    LTH = 11,
    LTEQ = 12,
    GT = 13,
    GTEQ = 14,
    PLUS = 15,
    MINUS = 16,
    MULT = 17,
    DIV = 18,
    MOD = 19,
    POW = 20,
    NOT = 21,
    INTEGER = 22,
    FLOAT = 23,
    DATETIME = 24,
    BOOLEAN = 25,
    IDENT = 26,
};

// Belongs to its tree. A call is an IDENT whose children are the arguments; a name used as a value
// is the one child of a PARAM.
class CFormulaNode {
public:
    explicit CFormulaNode(ANTLR3_BASE_TREE_struct& node) : m_Node(&node) {}

    EFormulaToken GetToken() const;
    // As written, within the text that the tree was made of; "PARAM" and "NEGATE" for those.
    std::string_view GetText() const;
    int GetChildCount() const;
    CFormulaNode GetChild(int index) const;

private:
    ANTLR3_BASE_TREE_struct* m_Node;
};

// Bytes. A longer text is no formula: while it is read, it takes some 700 times its length.
inline constexpr int MaxFormulaLength = 1 << 16;

// Any number of threads may make trees at the same time.
class CFormulaTree {
public:
    // The text, which is not null, outlives the tree. One whose parentheses nest deeper than told
    // is no formula, since they are read by recursion. The tree itself may be as deep as the text
    // is long: a + b + c is one level deeper than a + b.
    CFormulaTree(const char* formula, int maxParentheses);
    ~CFormulaTree();
    CFormulaTree(const CFormulaTree&) = delete;
    CFormulaTree& operator=(const CFormulaTree&) = delete;

    // Nothing when the text is no formula.
    std::optional<CFormulaNode> GetRoot() const { return m_Root; }

private:
    struct SRecognizers;
    std::unique_ptr<SRecognizers> m_Recognizers;
    std::optional<CFormulaNode> m_Root;
};

} // namespace Lathe::AppEngine
