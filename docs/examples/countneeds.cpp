// SPDX-License-Identifier: LGPL-2.1-or-later
// Counting needs: two views of an application register the message types they need; the
// manager tells when the set of needed types changes, which is when the receiver has to be
// asked for other messages.
#include "tiny/tinydictionary.h"

#include <messageinfo.h>
#include <messageneed.h>
#include <messageneedmanager.h>

#include <QStringList>

#include <cstdio>

int main()
{
    TinyDictionary dictionary;
    MessageInfo const *position
        = dictionary.getFormat()->getMessageInfo(QStringLiteral("Position"));
    MessageInfo const *status = dictionary.getFormat()->getMessageInfo(QStringLiteral("Status"));

    MessageNeedManager manager;
    QObject::connect(&manager, &MessageNeedManager::messageSetChanged, [&manager]() {
        QStringList names;
        for (MessageInfo const *info : manager.getMessagesNeeded())
            names.append(info->getName());
        names.sort(); // the manager keeps no order
        std::printf("needed: %s\n", qPrintable(names.join(QLatin1String(", "))));
    });

    {
        MessageNeed map(&manager);
        map.addMessageNeeded(position);
        MessageNeed panel(&manager);
        panel.setMessagesNeeded({ position, status });
        // Still needed by the panel: the set does not change, nobody is told.
        map.clearMessagesNeeded();
        std::printf("the map let go\n");
    } // destroyed needs withdraw theirs

    // A manager must not die while needs are registered; here none are.
    return 0;
}
