// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_AUXILIARY_WILDCARDMATCHER_H
#define MESSAGEAPI_AUXILIARY_WILDCARDMATCHER_H

// Internal helper of the path expressions. Not installed.

#include "qtcompat.h"

#include <QString>
#include <QStringView>

#include <array>
#include <memory>
#include <vector>

/**
 * Whole-name, case-insensitive matching of one pattern in QRegExp's Wildcard syntax, with the
 * same answers as QRegExp(pattern, Qt::CaseInsensitive, QRegExp::Wildcard).exactMatch(name):
 * "*" any run of characters, "?" any one character, "[...]" one character of a set (with
 * ranges and a leading "^"), every other character itself, compared after QChar::toLower().
 *
 * The pattern is read once; matching then costs no allocation and no regular expression, and
 * the common shapes ("Lat", "Pos*", "*Pos", "*Lat*") are plain comparisons. Patterns whose
 * reading by QRegExp has quirks of its own (a backslash, a "]" outside a set, an unterminated
 * set, a set that begins with "]") are handed to a QRegExp built once here.
 */
class WildcardMatcher
{
public:
    explicit WildcardMatcher(QString const &pattern);
    ~WildcardMatcher();
    WildcardMatcher(WildcardMatcher &&) noexcept;
    WildcardMatcher &operator=(WildcardMatcher &&) noexcept;

    bool matches(QStringView name) const;
    /// Whether every name matches (the pattern is made of "*" only).
    bool matchesEverything() const { return mShape == EverythingShape; }

private:
    enum Kind : unsigned char { Literal, AnyOne, AnyRun, Set };
    /// Exact "lit", Prefix "lit*", Suffix "*lit", Infix "*lit*", Everything "*".
    enum Shape : unsigned char {
        GeneralShape,
        ExactShape,
        PrefixShape,
        SuffixShape,
        InfixShape,
        EverythingShape
    };
    struct Token
    {
        Kind kind;
        char16_t lowered; ///< Literal: the pattern character lowered
        int set; ///< Set: index into mSets
    };
    struct Range
    {
        char16_t from;
        char16_t length; ///< 16 bits, as the regular expression keeps it
    };
    struct CharSet
    {
        bool negative = false;
        std::vector<Range> ranges;
        bool contains(char16_t unit) const;
        bool accepts(char16_t unit) const;
    };

    bool readPattern(QString const &pattern);
    int readSet(QString const &pattern, int position);
    void chooseShape();
    bool matchesLiteralAt(char16_t const *units) const;
    bool containsLiteral(char16_t const *units, int size) const;
    bool matchesTokens(char16_t const *units, int size) const;
    bool tokenAccepts(Token const &token, char16_t unit) const;

    std::vector<Token> mTokens;
    std::vector<CharSet> mSets;
    int mFixedUnits = 0; ///< units that every match consumes (all tokens but "*")
    bool mHasAnyRun = false;
    Shape mShape = GeneralShape;
    std::vector<char16_t> mLiteral; ///< the lowered literal of the plain shapes
    /// Infix search: how far the literal may move on when the lowered unit under its last
    /// character is this ASCII unit; mNonAsciiShift for every other unit.
    std::array<unsigned char, 128> mAsciiShift {};
    unsigned char mNonAsciiShift = 1;
    std::unique_ptr<QRegExp> mRegExp; ///< set for the patterns left to QRegExp
};

#endif // MESSAGEAPI_AUXILIARY_WILDCARDMATCHER_H
