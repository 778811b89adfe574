// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_FUZZ_FUZZINPUT_H
#define MESSAGEAPI_FUZZ_FUZZINPUT_H

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

/**
 * Reads a fuzzer's input from the front: single bytes that choose what a target does, then the
 * rest as the data under test. Reading past the end gives zeros and empty data, so every input
 * is usable whatever its length.
 */
class FuzzInput
{
public:
    FuzzInput(uint8_t const *data, size_t size)
        : mData(data)
        , mSize(size)
    { }

    /// The next byte, or 0 at the end.
    uint8_t takeByte() { return mPosition < mSize ? mData[mPosition++] : 0; }
    /// The next count bytes (fewer at the end).
    QByteArray takeBytes(size_t count);
    /// Everything not yet read.
    QByteArray takeRest() { return takeBytes(mSize - mPosition); }
    /**
     * Everything not yet read as text, decoded as the byte picks: UTF-8 (invalid sequences
     * become replacement characters), Latin-1, or raw UTF-16 code units (lone surrogates
     * included), so that a text of any code units can arrive.
     */
    QString takeText(uint8_t encoding);

private:
    uint8_t const *mData;
    size_t mSize;
    size_t mPosition = 0;
};

#endif // MESSAGEAPI_FUZZ_FUZZINPUT_H
