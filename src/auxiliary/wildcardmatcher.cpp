// SPDX-License-Identifier: LGPL-2.1-or-later
#include "auxiliary/wildcardmatcher.h"

#include "auxiliary/tracing.h"

#include <QChar>

#include <utility>

MSGAPI_SOURCE_FILE("WILDCARDMATCHER", "src/auxiliary/wildcardmatcher")

namespace {

// QChar::toLower() and QChar::toUpper() of one code unit, without the table look-up for ASCII.
// Names mix the cases unpredictably, so ASCII letters are lowered without a branch.
inline char16_t lowerUnit(char16_t unit)
{
    if (Q_LIKELY(unit < 0x80))
        return char16_t(unit | ((unsigned(unit) - u'A' < 26u) << 5));
    return QChar(unit).toLower().unicode();
}

inline char16_t upperUnit(char16_t unit)
{
    if (unit < 0x80)
        return char16_t(unit & ~((unsigned(unit) - u'a' < 26u) << 5));
    return QChar(unit).toUpper().unicode();
}

inline char16_t const *unitsOf(QString const &text)
{
    return reinterpret_cast<char16_t const *>(text.unicode());
}

} // namespace

bool WildcardMatcher::CharSet::contains(char16_t unit) const
{
    for (Range const &range : ranges) {
        // A range is kept as a start and a 16-bit length, so a range over all 65536 units has
        // length 0 and holds nothing; the comparison keeps that.
        if (unsigned(unit - range.from) < unsigned(range.length))
            return true;
    }
    return false;
}

bool WildcardMatcher::CharSet::accepts(char16_t unit) const
{
    // Case-insensitive sets try the lowered and the uppered unit: a set accepts when either form
    // is in it, a negated set when neither is.
    if (negative)
        return !contains(lowerUnit(unit)) && !contains(upperUnit(unit));
    return contains(lowerUnit(unit)) || contains(upperUnit(unit));
}

WildcardMatcher::WildcardMatcher(QString const &pattern)
{
    if (!readPattern(pattern)) {
        mTokens.clear();
        mSets.clear();
        mRegExp = std::make_unique<QRegExp>(pattern, Qt::CaseInsensitive, QRegExp::Wildcard);
        return;
    }
    for (Token const &token : mTokens) {
        if (token.kind == AnyRun)
            mHasAnyRun = true;
        else
            ++mFixedUnits;
    }
    chooseShape();
}

WildcardMatcher::~WildcardMatcher() = default;
WildcardMatcher::WildcardMatcher(WildcardMatcher &&) noexcept = default;
WildcardMatcher &WildcardMatcher::operator=(WildcardMatcher &&) noexcept = default;

bool WildcardMatcher::readPattern(QString const &pattern)
{
    char16_t const *unit = unitsOf(pattern);
    int const size = int(pattern.size());
    for (int i = 0; i < size; ++i) {
        switch (unit[i]) {
        case u'\\': // a literal backslash that also escapes what follows: left to QRegExp
        case u']': // a "]" outside a set makes the expression invalid: left to QRegExp
            return false;
        case u'*':
            // Runs of "*" match what one does.
            if (mTokens.empty() || mTokens.back().kind != AnyRun)
                mTokens.push_back(Token { AnyRun, 0, -1 });
            break;
        case u'?':
            mTokens.push_back(Token { AnyOne, 0, -1 });
            break;
        case u'[':
            i = readSet(pattern, i);
            if (i < 0)
                return false;
            break;
        default:
            // Every other character, regular expression characters included, stands for itself.
            mTokens.push_back(Token { Literal, lowerUnit(unit[i]), -1 });
        }
    }
    return true;
}

int WildcardMatcher::readSet(QString const &pattern, int position)
{
    char16_t const *unit = unitsOf(pattern);
    int const size = int(pattern.size());
    CharSet set;
    int i = position + 1;
    if (i < size && unit[i] == u'^') {
        set.negative = true;
        ++i;
    }
    // An empty or unterminated set, or one that starts with "]", is read differently by QRegExp.
    if (i >= size || unit[i] == u']')
        return -1;
    int end = i;
    while (end < size && unit[end] != u']')
        ++end;
    if (end == size)
        return -1;

    // Single characters and "a-z" ranges (either way round); a "-" that cannot start a range
    // stands for itself.
    auto add = [&set](char16_t from, char16_t to) {
        if (from > to)
            std::swap(from, to);
        set.ranges.push_back(Range { from, char16_t(to - from + 1) });
    };
    char16_t pending = 0;
    bool charPending = false;
    bool rangePending = false;
    for (; i < end; ++i) {
        char16_t const c = unit[i];
        if (c == u'-' && charPending && !rangePending) {
            rangePending = true;
            continue;
        }
        if (charPending && !rangePending) {
            add(pending, pending);
            charPending = false;
        }
        if (rangePending) {
            add(pending, c);
            charPending = false;
            rangePending = false;
        } else {
            pending = c;
            charPending = true;
        }
    }
    if (rangePending)
        add(u'-', u'-');
    if (charPending)
        add(pending, pending);

    mTokens.push_back(Token { Set, 0, int(mSets.size()) });
    mSets.push_back(std::move(set));
    return end;
}

void WildcardMatcher::chooseShape()
{
    // A plain literal, optionally between a leading and a trailing "*", is compared directly.
    int first = 0;
    int last = int(mTokens.size());
    bool const leading = first < last && mTokens[size_t(first)].kind == AnyRun;
    if (leading)
        ++first;
    bool const trailing = first < last && mTokens[size_t(last - 1)].kind == AnyRun;
    if (trailing)
        --last;
    if (first == last) {
        mShape = leading ? EverythingShape : ExactShape; // "*" or the empty pattern
        return;
    }
    for (int t = first; t < last; ++t) {
        if (mTokens[size_t(t)].kind != Literal)
            return;
        mLiteral.push_back(mTokens[size_t(t)].lowered);
    }
    mShape
        = leading ? (trailing ? InfixShape : SuffixShape) : (trailing ? PrefixShape : ExactShape);

    if (mShape == InfixShape) {
        // Horspool's shifts over lowered units; a literal too long for a byte shift, or with
        // non-ASCII units, moves on by one unit wherever it is unsure.
        size_t const length = mLiteral.size();
        unsigned char const full = length < 256 ? (unsigned char)length : 1;
        mAsciiShift.fill(full);
        mNonAsciiShift = full;
        for (size_t i = 0; i + 1 < length; ++i) {
            unsigned char const shift = full == 1 ? 1 : (unsigned char)(length - 1 - i);
            if (mLiteral[i] < 0x80)
                mAsciiShift[mLiteral[i]] = shift;
            else
                mNonAsciiShift = 1;
        }
    }
}

inline bool WildcardMatcher::matchesLiteralAt(char16_t const *units) const
{
    size_t const length = mLiteral.size();
    for (size_t i = 0; i < length; ++i) {
        if (lowerUnit(units[i]) != mLiteral[i])
            return false;
    }
    return true;
}

bool WildcardMatcher::matches(QStringView name) const
{
    if (mRegExp)
        return mRegExp->exactMatch(QString::fromRawData(name.data(), name.size()));
    int const size = int(name.size());
    if (size < mFixedUnits || (!mHasAnyRun && size != mFixedUnits))
        return false;
    char16_t const *units = name.utf16();
    switch (mShape) {
    case EverythingShape:
        return true;
    case ExactShape:
    case PrefixShape:
        return matchesLiteralAt(units);
    case SuffixShape:
        return matchesLiteralAt(units + (size - mFixedUnits));
    case InfixShape:
        return containsLiteral(units, size);
    case GeneralShape:
        break;
    }
    return matchesTokens(units, size);
}

bool WildcardMatcher::containsLiteral(char16_t const *units, int size) const
{
    int const length = int(mLiteral.size());
    char16_t const last = mLiteral.back();
    for (int start = 0; start <= size - length;) {
        char16_t const unit = lowerUnit(units[start + length - 1]);
        if (unit == last && matchesLiteralAt(units + start))
            return true;
        start += unit < 0x80 ? mAsciiShift[unit] : mNonAsciiShift;
    }
    return false;
}

inline bool WildcardMatcher::tokenAccepts(Token const &token, char16_t unit) const
{
    switch (token.kind) {
    case Literal:
        return token.lowered == lowerUnit(unit);
    case AnyOne:
        return true;
    case Set:
        return mSets[size_t(token.set)].accepts(unit);
    case AnyRun:
        break;
    }
    return false;
}

bool WildcardMatcher::matchesTokens(char16_t const *units, int size) const
{
    // Greedy matching that falls back to the latest "*": with "*" as the only construct of
    // variable length, extending the latest "*" by one unit is the only retry ever needed.
    int const tokenCount = int(mTokens.size());
    int t = 0;
    int n = 0;
    int starToken = -1;
    int starName = 0;
    while (n < size) {
        if (t < tokenCount) {
            Token const &token = mTokens[size_t(t)];
            if (token.kind == AnyRun) {
                starToken = t++;
                starName = n;
                continue;
            }
            if (tokenAccepts(token, units[n])) {
                ++t;
                ++n;
                continue;
            }
        }
        if (starToken < 0)
            return false;
        t = starToken + 1;
        n = ++starName;
    }
    while (t < tokenCount && mTokens[size_t(t)].kind == AnyRun)
        ++t;
    return t == tokenCount;
}
