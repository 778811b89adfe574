// SPDX-License-Identifier: LGPL-2.1-or-later
// Sets a path expression from text of any code units through the setters an editor uses, and
// evaluates it on the tests' fixture dictionary.
//
// Input: two setters (a nibble each), the parts they and the queries use, options, text
// encoding, where the text splits into pattern and name for matchesName(), then the text.
#include "auxiliary/fuzzenvironment.h"
#include "auxiliary/fuzzinput.h"

#include "dictionaryfixture.h"
#include "messageapievent.h"
#include "pathexpression.h"

namespace {

void apply(PathExpression &expression, uint8_t setter, PathExpression::Parts parts,
           QString const &text)
{
    switch (setter % 12) {
    case 0:
        expression.setString(text);
        break;
    case 1:
        expression.setString(text, parts);
        break;
    case 2:
        expression.setFormatPart(text);
        break;
    case 3:
        expression.setMessagePart(text);
        break;
    case 4:
        expression.setFieldPart(text);
        break;
    case 5:
        expression.setStringPrefix(text);
        break;
    case 6:
        expression.setStringPrefix(text, parts);
        break;
    case 7:
        expression.setFormatPartPrefix(text);
        break;
    case 8:
        expression.setMessagePartPrefix(text);
        break;
    case 9:
        expression.setFieldPartPrefix(text);
        break;
    case 10:
        expression.setWildCard(parts);
        break;
    default: {
        QString format, message, field;
        expression.split(text, format, message, field, parts);
        break;
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    FuzzEnvironment::setUp();
    static DictionaryFixture fixture;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size)
{
    FuzzInput input(data, size);
    const uint8_t setters = input.takeByte();
    const PathExpression::Parts parts(input.takeByte() & 7);
    const uint8_t options = input.takeByte();
    const uint8_t encoding = input.takeByte();
    const uint8_t split = input.takeByte();
    const QString text = input.takeText(encoding);

    PathExpression expression;
    expression.setConsiderSubMessages(options & 1);
    apply(expression, setters & 0x0f, parts, text);
    apply(expression, setters >> 4, parts, text);

    expression.getString(parts);
    expression.isWildCard(parts);
    expression.getMatchingFieldInfos();
    expression.getMatchingMessageInfos();
    expression.getMatchingExpressionsStringList(parts);
    expression.getMatchingFormatsStringList();
    expression.getMatchingMessagesStringList();
    expression.getMatchingFieldsStringList();
    expression.completeEditing();
    const int half = text.size() * split / 255;
    expression.matchesName(text.left(half), text.mid(half));
    expression.maybeAppendWildCard(text);

    const PathExpression fromText(text);
    fromText.getMatchingFieldInfos();
    // Anything but exactly one match is the caller's error, thrown as such.
    try {
        if (options & 2)
            PathExpression::getUniqueFieldInfo(text);
        else
            PathExpression::getUniqueMessageInfo(text);
    } catch (MessageApiEvent const &) { }
    return 0;
}
