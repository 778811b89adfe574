// SPDX-License-Identifier: LGPL-2.1-or-later
// Selecting with path expressions: fields and message types of the RTCM 3 dictionary by
// "format:message:field" patterns, as a program's options or an editor give them.
#include <rtcm3/rtcm3dictionary.h>

#include <fieldinfo.h>
#include <messageapievent.h>
#include <messageinfo.h>
#include <pathexpression.h>

#include <cstdio>

int main()
{
    Rtcm3Dictionary dictionary;

    // Wildcards and sets over whole names, case-insensitive.
    PathExpression antenna(QStringLiteral("RTCM3:1005:DF02[5-7]"));
    for (FieldInfo const *field : antenna.getMatchingFieldInfos())
        std::printf("%s  %s [%s]\n", qPrintable(field->getName()),
                    qPrintable(field->getShortDescriptiveText()),
                    qPrintable(field->getUnitString(true)));

    // Alternatives with "|"; the satellite records of MSM are sub-messages ("1077 satellite").
    PathExpression msm(QStringLiteral("RTCM3:1077*|1127*:DF397"));
    msm.setConsiderSubMessages(true);
    std::printf("%s\n",
                qPrintable(msm.getMatchingExpressionsStringList(PathExpression::AllParts)
                               .join(QLatin1String(", "))));

    // An editor narrows the selection while the user types, and completes it on Enter.
    PathExpression editor;
    editor.setFormatPart(QStringLiteral("RTCM3"));
    QObject::connect(&editor, &PathExpression::matchesMayHaveChanged, [&editor]() {
        std::printf("%s: %d message types\n",
                    qPrintable(editor.getString(PathExpression::AllParts)),
                    int(editor.getMatchingMessageInfos().size()));
    });
    QObject::connect(&editor, &PathExpression::messageInfoSelected, [](MessageInfo const *info) {
        std::printf("selected %s, %s\n", qPrintable(info->getName()),
                    qPrintable(info->getShortDescriptiveText()));
    });
    for (char const *typed : { "10", "107", "1077" })
        editor.setMessagePartPrefix(QLatin1String(typed));
    editor.setMessagePart(QStringLiteral("1077"));
    editor.completeEditing();

    // Exactly one entry, or a client error that says why.
    std::printf("%s\n",
                qPrintable(PathExpression::getUniqueFieldInfo(QStringLiteral("RTCM3:1005:DF025"))
                               ->getShortDescriptiveText()));
    try {
        PathExpression::getUniqueFieldInfo(QStringLiteral("RTCM3:1005:DF02*"));
    } catch (MessageApiEvent const &error) {
        std::printf("%s: %s\n", qPrintable(error.getTypeString()), qPrintable(error.getMessage()));
    }
    return 0;
}
