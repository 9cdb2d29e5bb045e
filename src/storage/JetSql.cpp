#include "storage/JetSql.h"

#include "common/Text.h"
#include "storage/Database.h"

#include <cctype>
#include <vector>

namespace wicker {
namespace {

[[noreturn]] void Refuse(const std::string& why) {
    throw DbError(why, dberr::SyntaxError);
}

bool IsIdentChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
    return UCase(a) == UCase(b);
}

// Splits statement text into tokens: words, quoted strings ('...' with '' doubling),
// bracketed names, #dates#, and single punctuation characters. Blanks are dropped.
struct Token {
    enum Kind { Word, String, Bracket, Date, Punct } kind;
    std::string text;
};

std::vector<Token> Tokenize(std::string_view s) {
    std::vector<Token> out;
    size_t i = 0;
    while (i < s.size()) {
        const char c = s[i];
        if (std::isspace(static_cast<unsigned char>(c)) != 0) {
            ++i;
        } else if (c == '\'' || c == '"') {
            size_t j = i + 1;
            while (true) {
                if (j >= s.size()) {
                    Refuse("Unterminated text in statement: " + std::string(s));
                }
                if (s[j] == c) {
                    if (j + 1 < s.size() && s[j + 1] == c) {
                        j += 2;
                        continue;
                    }
                    break;
                }
                ++j;
            }
            out.push_back({Token::String, std::string(s.substr(i, j - i + 1))});
            i = j + 1;
        } else if (c == '[') {
            const size_t j = s.find(']', i);
            if (j == std::string_view::npos) {
                Refuse("Unterminated name in statement: " + std::string(s));
            }
            out.push_back({Token::Bracket, std::string(s.substr(i, j - i + 1))});
            i = j + 1;
        } else if (c == '#') {
            const size_t j = s.find('#', i + 1);
            if (j == std::string_view::npos) {
                Refuse("Unterminated date in statement: " + std::string(s));
            }
            out.push_back({Token::Date, std::string(s.substr(i + 1, j - i - 1))});
            i = j + 1;
        } else if (IsIdentChar(c) || c == '.') {
            size_t j = i;
            while (j < s.size() && (IsIdentChar(s[j]) || s[j] == '.')) {
                ++j;
            }
            // Exponents of number literals ("1e-3") stay in one word.
            if (j < s.size() && (s[j] == '+' || s[j] == '-') && j > i &&
                (s[j - 1] == 'e' || s[j - 1] == 'E') &&
                std::isdigit(static_cast<unsigned char>(s[i])) != 0) {
                ++j;
                while (j < s.size() && std::isdigit(static_cast<unsigned char>(s[j])) != 0) {
                    ++j;
                }
            }
            out.push_back({Token::Word, std::string(s.substr(i, j - i))});
            i = j;
        } else {
            // Two-character operators stay together.
            if (i + 1 < s.size()) {
                const std::string two(s.substr(i, 2));
                if (two == "<>" || two == "<=" || two == ">=" || two == "!=" || two == "||") {
                    out.push_back({Token::Punct, two});
                    i += 2;
                    continue;
                }
            }
            out.push_back({Token::Punct, std::string(1, c)});
            ++i;
        }
    }
    return out;
}

std::string Join(const std::vector<Token>& tokens, size_t from, size_t to) {
    std::string out;
    for (size_t k = from; k < to; ++k) {
        const Token& t = tokens[k];
        if (!out.empty() && t.text != ")" && t.text != "," && out.back() != '(') {
            out += ' ';
        }
        out += t.kind == Token::Date ? "'" + t.text + "'" : t.text;
    }
    return out;
}

// Index of the ")" that closes the "(" at `open`.
size_t MatchingParen(const std::vector<Token>& tokens, size_t open) {
    int depth = 0;
    for (size_t k = open; k < tokens.size(); ++k) {
        if (tokens[k].kind == Token::Punct && tokens[k].text == "(") {
            ++depth;
        } else if (tokens[k].kind == Token::Punct && tokens[k].text == ")") {
            if (--depth == 0) {
                return k;
            }
        }
    }
    Refuse("Unbalanced parentheses in statement");
}

std::string Rewrite(const std::vector<Token>& tokens, size_t from, size_t to) {
    std::string out;
    auto append = [&](const std::string& piece) {
        if (!out.empty() && piece != ")" && piece != "," && out.back() != '(') {
            out += ' ';
        }
        out += piece;
    };
    for (size_t k = from; k < to; ++k) {
        const Token& t = tokens[k];
        if (t.kind == Token::Word && EqualsNoCase(t.text, "ISNULL") && k + 1 < to &&
            tokens[k + 1].text == "(") {
            const size_t close = MatchingParen(tokens, k + 1);
            append("((" + Rewrite(tokens, k + 2, close) + ") IS NULL)");
            k = close;
        } else if (t.kind == Token::Date) {
            append("'" + t.text + "'");
        } else {
            append(t.text);
        }
    }
    return out;
}

std::string Unquote(const std::string& name) {
    if (name.size() >= 2 && name.front() == '[' && name.back() == ']') {
        return name.substr(1, name.size() - 2);
    }
    return name;
}

std::string Quoted(std::string_view name) {
    return "\"" + std::string(name) + "\"";
}

// Splits the column list of a CREATE TABLE text at its top-level commas.
std::vector<std::string> SplitColumns(std::string_view body) {
    std::vector<std::string> parts;
    int depth = 0;
    bool inQuote = false;
    std::string cur;
    for (char c : body) {
        if (c == '\'') {
            inQuote = !inQuote;
        }
        if (!inQuote) {
            if (c == '(') {
                ++depth;
            } else if (c == ')') {
                --depth;
            } else if (c == ',' && depth == 0) {
                parts.push_back(cur);
                cur.clear();
                continue;
            }
        }
        cur += c;
    }
    parts.push_back(cur);
    return parts;
}

std::string FirstName(const std::string& def) {
    const std::string t = Trim(def);
    if (!t.empty() && t.front() == '"') {
        return t.substr(1, t.find('"', 1) - 1);
    }
    size_t j = 0;
    while (j < t.size() && IsIdentChar(t[j])) {
        ++j;
    }
    return t.substr(0, j);
}

} // namespace

bool IsNumberLiteral(std::string_view v) {
    size_t i = 0;
    if (i < v.size() && (v[i] == '-' || v[i] == '+')) {
        ++i;
    }
    size_t digits = 0;
    while (i < v.size() && std::isdigit(static_cast<unsigned char>(v[i])) != 0) {
        ++i;
        ++digits;
    }
    if (i < v.size() && v[i] == '.') {
        ++i;
        while (i < v.size() && std::isdigit(static_cast<unsigned char>(v[i])) != 0) {
            ++i;
            ++digits;
        }
    }
    if (digits == 0) {
        return false;
    }
    if (i < v.size() && (v[i] == 'e' || v[i] == 'E')) {
        ++i;
        if (i < v.size() && (v[i] == '-' || v[i] == '+')) {
            ++i;
        }
        size_t expDigits = 0;
        while (i < v.size() && std::isdigit(static_cast<unsigned char>(v[i])) != 0) {
            ++i;
            ++expDigits;
        }
        if (expDigits == 0) {
            return false;
        }
    }
    return i == v.size();
}

std::string SqlText(std::string_view value) {
    if (value.find('\'') != std::string_view::npos) {
        Refuse("Syntax error in string in query expression '" + std::string(value) + "'.");
    }
    if (value.find('\0') != std::string_view::npos) {
        Refuse("Text values may not hold NUL characters.");
    }
    return std::string(value);
}

std::string SqlNumber(std::string_view value) {
    // Blanks around a number are only white space in the statement.
    if (!IsNumberLiteral(Trim(value))) {
        Refuse("Syntax error in query expression: '" + std::string(value) + "' is not a number.");
    }
    return std::string(value);
}

std::string JetColumnDef(std::string_view column, std::string_view jetType) {
    const std::string q = Quoted(column);
    std::string type = UCase(Trim(jetType));
    int size = 255;
    if (const size_t p = type.find('('); p != std::string::npos) {
        const size_t close = type.find(')', p);
        const std::string inner =
            type.substr(p + 1, close == std::string::npos ? std::string::npos : close - p - 1);
        // A text size is a whole number of characters up to 255, as the engine it stands
        // in for allowed; anything else would break the CHECK built from it.
        const std::string digits = Trim(inner);
        if (digits.empty() || digits.size() > 3 ||
            digits.find_first_not_of("0123456789") != std::string::npos || std::stoi(digits) < 1 ||
            std::stoi(digits) > 255) {
            Refuse("Bad size in column type " + std::string(jetType));
        }
        size = std::stoi(digits);
        type = Trim(type.substr(0, p));
    }
    // Two comparisons, not an IN list: SQLite builds a temporary table for a list of three
    // at every row it checks, which made a 50,000-line import 20 times slower.
    const std::string numeric =
        " CHECK(typeof(" + q + ") <> 'text' AND typeof(" + q + ") <> 'blob')";
    if (type == "TEXT" || type == "CHAR" || type == "VARCHAR") {
        return q + " Text(" + std::to_string(size) + ") COLLATE NOCASE CHECK(length(" + q +
               ") <= " + std::to_string(size) + ")";
    }
    if (type == "COUNTER" || type == "AUTOINCREMENT") {
        return q + " INTEGER PRIMARY KEY AUTOINCREMENT";
    }
    if (type == "LONG" || type == "INTEGER" || type == "INT") {
        return q + " Long" + numeric + " CHECK(" + q + " BETWEEN -2147483648 AND 2147483647)";
    }
    if (type == "SHORT" || type == "SMALLINT") {
        return q + " Short" + numeric + " CHECK(" + q + " BETWEEN -32768 AND 32767)";
    }
    if (type == "SINGLE" || type == "REAL") {
        return q + " Single" + numeric;
    }
    if (type == "DOUBLE" || type == "FLOAT" || type == "NUMBER") {
        return q + " Double" + numeric;
    }
    if (type == "DATE" || type == "DATETIME") {
        return q + " Date";
    }
    Refuse("Unknown column type " + std::string(jetType));
}

std::string ReplaceColumnDef(std::string_view createSql, std::string_view column,
                             std::string_view newDef) {
    const size_t open = createSql.find('(');
    const size_t close = createSql.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open) {
        throw DbError("Cannot read the table definition", dberr::Unspecified);
    }
    auto parts = SplitColumns(createSql.substr(open + 1, close - open - 1));
    bool found = false;
    for (auto& p : parts) {
        if (EqualsNoCase(FirstName(p), column)) {
            p = std::string(newDef);
            found = true;
        }
    }
    if (!found) {
        throw DbError("Field '" + std::string(column) + "' not found", dberr::Unspecified);
    }
    std::string out(createSql.substr(0, open + 1));
    for (size_t k = 0; k < parts.size(); ++k) {
        out += (k ? ", " : "") + Trim(parts[k]);
    }
    out += createSql.substr(close);
    return out;
}

JetStatement TranslateJet(std::string_view sql) {
    std::vector<Token> tokens = Tokenize(sql);
    // One statement per call: a ";" may only end the text.
    for (size_t k = 0; k < tokens.size(); ++k) {
        if (tokens[k].kind == Token::Punct && tokens[k].text == ";") {
            for (size_t r = k + 1; r < tokens.size(); ++r) {
                if (!(tokens[r].kind == Token::Punct && tokens[r].text == ";")) {
                    Refuse("Characters found after end of SQL statement.");
                }
            }
            tokens.resize(k);
            break;
        }
    }
    if (tokens.empty()) {
        Refuse("Invalid SQL statement: empty text.");
    }
    auto word = [&](size_t k, const char* w) {
        return k < tokens.size() && tokens[k].kind == Token::Word &&
               EqualsNoCase(tokens[k].text, w);
    };
    JetStatement out;
    if (word(0, "ALTER") && word(1, "TABLE") && tokens.size() >= 6) {
        const std::string table = Unquote(tokens[2].text);
        if (word(3, "ALTER") && word(4, "COLUMN") && tokens.size() >= 7) {
            out.alterColumn =
                JetAlterColumn{table, Unquote(tokens[5].text), Join(tokens, 6, tokens.size())};
            return out;
        }
        if (word(3, "ADD") && word(4, "COLUMN") && tokens.size() >= 7) {
            const std::string column = Unquote(tokens[5].text);
            out.sql = "ALTER TABLE " + Quoted(table) + " ADD COLUMN " +
                      JetColumnDef(column, Join(tokens, 6, tokens.size()));
            return out;
        }
    }
    out.sql = Rewrite(tokens, 0, tokens.size());
    return out;
}

} // namespace wicker
