#include "tools/import/DotOutline.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace TopologyTools {
namespace {

struct Token {
    enum class Kind { id, keyword, link, other };

    Kind kind;
    std::string text;  // of an id, as libcgraph reads it; of a keyword, in small letters
    std::size_t offset;

    bool is(char c) const { return kind == Kind::other && text[0] == c; }
    bool isKeyword(std::string_view word) const { return kind == Kind::keyword && text == word; }
};

bool isIdByte(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

std::string inSmallLetters(std::string word) {
    std::transform(word.begin(), word.end(), word.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return word;
}

bool isKeyword(std::string const & word) {
    return word == "strict" || word == "graph" || word == "digraph" || word == "subgraph" || word == "node" ||
           word == "edge";
}

class Scanner {
public:
    explicit Scanner(std::string_view bytes) : bytes_(bytes) {
        if (bytes_.substr(0, byteOrderMark.size()) == byteOrderMark) {
            at_ = byteOrderMark.size();
        }
    }

    // The next token; none at the end.
    std::optional<Token> next() {
        skipSpace();
        if (at_ >= bytes_.size()) {
            return std::nullopt;
        }
        std::size_t const start = at_;
        char const c = bytes_[at_];
        if (c == '"') {
            return Token{Token::Kind::id, quotedId(), start};
        }
        if (c == '<') {
            return Token{Token::Kind::id, htmlId(), start};
        }
        if (bytes_.substr(at_, 2) == "--" || bytes_.substr(at_, 2) == "->") {
            at_ += 2;
            return Token{Token::Kind::link, std::string(bytes_.substr(start, 2)), start};
        }
        if (c == '-' || c == '.' || (c >= '0' && c <= '9')) {
            return Token{Token::Kind::id, numeral(), start};
        }
        if (isIdByte(c)) {
            while (at_ < bytes_.size() && isIdByte(bytes_[at_])) {
                ++at_;
            }
            std::string word(bytes_.substr(start, at_ - start));
            std::string small = inSmallLetters(word);
            if (isKeyword(small)) {
                return Token{Token::Kind::keyword, std::move(small), start};
            }
            return Token{Token::Kind::id, std::move(word), start};
        }
        ++at_;
        return Token{Token::Kind::other, std::string(1, c), start};
    }

    // Offset of a comment that does not end.
    std::optional<std::size_t> openComment() const { return openComment_; }

private:
    void skipSpace() {
        while (at_ < bytes_.size()) {
            if (std::string_view(" \t\r\n").find(bytes_[at_]) != std::string_view::npos) {
                ++at_;
            } else if (bytes_[at_] == '#' || bytes_.substr(at_, 2) == "//") {
                at_ = std::min(bytes_.find('\n', at_), bytes_.size());
            } else if (bytes_.substr(at_, 2) == "/*") {
                std::size_t const end = bytes_.find("*/", at_ + 2);
                if (end == std::string_view::npos) {
                    openComment_ = at_;
                    at_ = bytes_.size();
                } else {
                    at_ = end + 2;
                }
            } else {
                return;
            }
        }
    }

    // A quoted id, with those that '+' appends to it. Only '\"' and an escaped line end are escapes.
    std::string quotedId() {
        std::string id;
        for (;;) {
            ++at_;
            while (at_ < bytes_.size() && bytes_[at_] != '"') {
                std::string_view const two = bytes_.substr(at_, 2);
                if (two == "\\\"" || two == "\\\\") {
                    id += two == "\\\"" ? "\"" : two;
                    at_ += 2;
                } else if (two == "\\\n" || bytes_.substr(at_, 3) == "\\\r\n") {
                    at_ += two == "\\\n" ? 2 : 3;
                } else {
                    id += bytes_[at_++];
                }
            }
            ++at_;
            std::size_t const end = at_;
            skipSpace();
            if (at_ < bytes_.size() && bytes_[at_] == '+') {
                ++at_;
                skipSpace();
                if (at_ < bytes_.size() && bytes_[at_] == '"') {
                    continue;
                }
            }
            at_ = end;
            return id;
        }
    }

    std::string htmlId() {
        std::size_t const start = at_ + 1;
        int depth = 0;
        for (; at_ < bytes_.size(); ++at_) {
            if (bytes_[at_] == '<') {
                ++depth;
            } else if (bytes_[at_] == '>' && --depth == 0) {
                break;
            }
        }
        std::string id(bytes_.substr(start, at_ - start));
        ++at_;
        return id;
    }

    std::string numeral() {
        std::size_t const start = at_++;
        while (at_ < bytes_.size() && (bytes_[at_] == '.' || (bytes_[at_] >= '0' && bytes_[at_] <= '9'))) {
            ++at_;
        }
        return std::string(bytes_.substr(start, at_ - start));
    }

    std::string_view bytes_;
    std::size_t at_ = 0;
    std::optional<std::size_t> openComment_;
};

// Walks the tokens of the first graph's body.
class BodyReader {
public:
    BodyReader(std::vector<Token> const & tokens, DotOutline & outline)
        : tokens_(tokens), outline_(outline) {}

    // Returns the index after the '}' that ends the graph.
    std::size_t read() {
        while (at_ < tokens_.size() && !tokens_[at_].is('{')) {
            ++at_;
        }
        int depth = 0;
        while (at_ < tokens_.size()) {
            Token const & token = tokens_[at_++];
            if (token.is('{')) {
                ++depth;
                tail_ = nullptr;
            } else if (token.is('}')) {
                if (--depth == 0) {
                    break;
                }
                tail_ = nullptr;
                skipPort();
                skip([](Token const & t) { return t.kind == Token::Kind::link; });
            } else if (token.is('[')) {
                while (at_ < tokens_.size() && !tokens_[at_++].is(']')) {
                }
                tail_ = nullptr;
            } else if (token.isKeyword("subgraph")) {
                tail_ = nullptr;
                skip([](Token const & t) { return t.kind == Token::Kind::id; });
            } else if (token.kind == Token::Kind::id) {
                readId(token);
            } else {
                tail_ = nullptr;
            }
        }
        return at_;
    }

private:
    template <typename Wanted>
    bool skip(Wanted const & wanted) {
        if (at_ < tokens_.size() && wanted(tokens_[at_])) {
            ++at_;
            return true;
        }
        return false;
    }

    void skipPort() {
        while (skip([](Token const & t) { return t.is(':'); })) {
            skip([](Token const & t) { return t.kind == Token::Kind::id; });
        }
    }

    // A node, as a statement of its own or as one side of a link; or the name in an assignment.
    void readId(Token const & token) {
        if (skip([](Token const & t) { return t.is('='); })) {
            skip([](Token const & t) { return t.kind == Token::Kind::id; });
            return;
        }
        outline_.mention.emplace(token.text, token.offset);
        if (tail_ != nullptr) {
            outline_.links.push_back({tail_->text, token.text, tail_->offset});
        }
        skipPort();
        tail_ = skip([](Token const & t) { return t.kind == Token::Kind::link; }) ? &token : nullptr;
    }

    std::vector<Token> const & tokens_;
    DotOutline & outline_;
    std::size_t at_ = 0;
    Token const * tail_ = nullptr;  // the node before a "--" or "->" that was just read
};

}  // namespace

DotOutline outlineDot(SourceText const & text) {
    Scanner scanner(text.bytes());
    std::vector<Token> tokens;
    while (std::optional<Token> token = scanner.next()) {
        tokens.push_back(std::move(*token));
    }
    if (scanner.openComment()) {
        throw text.error(*scanner.openComment(), "comment without end; expected \"*/\"");
    }
    DotOutline outline;
    if (!tokens.empty()) {
        outline.start = tokens.front().offset;
    }
    for (std::size_t i = BodyReader(tokens, outline).read(); i < tokens.size(); ++i) {
        if (tokens[i].isKeyword("strict") || tokens[i].isKeyword("graph") || tokens[i].isKeyword("digraph")) {
            throw text.error(tokens[i].offset, "a second graph in the file; expected one");
        }
    }
    return outline;
}

bool looksLikeDot(std::string_view bytes) {
    std::optional<Token> const first = Scanner(bytes).next();
    return first && (first->isKeyword("strict") || first->isKeyword("graph") || first->isKeyword("digraph"));
}

}  // namespace TopologyTools
