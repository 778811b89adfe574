// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_RECORDINGDECODER_H
#define MESSAGEAPI_TESTS_RECORDINGDECODER_H

#include "abstractdecoder.h"

#include <QList>
#include <QSet>

/**
 * A decoder that decodes nothing: it records the calls of its code operations and answers the
 * enabled query from a set of codes that the test controls.
 */
class RecordingDecoder : public AbstractDecoder
{
    Q_OBJECT

public:
    explicit RecordingDecoder(QString name = QStringLiteral("Recorder"), QObject *parent = nullptr)
        : AbstractDecoder(std::move(name), parent)
    { }

    using AbstractDecoder::decodeMessage;
    int32_t decodeMessage(const uint8_t *, uint maxlength) override { return int32_t(maxlength); }
    FormatInfo const *getFormatInfo() const override { return nullptr; }
    void reset() override { }
    void enableMessageCode(int32_t code) override { enabledCalls.append(code); }
    void disableMessageCode(int32_t code) override { disabledCalls.append(code); }
    bool isEnabledMessageCode(int32_t code) const override
    {
        queriedCodes.append(code);
        return enabledCodes.contains(code);
    }

    QList<int32_t> enabledCalls;
    QList<int32_t> disabledCalls;
    mutable QList<int32_t> queriedCodes;
    QSet<int32_t> enabledCodes; ///< what isEnabledMessageCode answers
};

#endif // MESSAGEAPI_TESTS_RECORDINGDECODER_H
