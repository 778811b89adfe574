<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1">
<context>
    <name>DictionaryTreeModel</name>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Title</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scale factor</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>EventLogModel</name>
    <message>
        <source>Time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FieldInfo</name>
    <message>
        <source>Unknown unit enum value %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unknown unit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>N/A</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>IntervalChart</name>
    <message>
        <source>Select a message type</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Intervals of %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No intervals yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gaps over time: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No gaps</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MessageApiEvent</name>
    <message>
        <source>Connection Opened</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connection Closed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CRC Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown Message</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Decoder Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Application Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Client Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[Event discarded in future:] </source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MessageDump</name>
    <message>
        <source>bad --dump expression %1: it matches no field of the dictionary</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MessageFieldsModel</name>
    <message>
        <source>(confidential)</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>... (%n values)</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>Field</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Title</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Raw</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hexadecimal</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MessageSource</name>
    <message>
        <source>%1 connection opened</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 connection closed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 CRC error</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MessageStatistics</name>
    <message>
        <source>%1 s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 Hz/</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 Hz</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MonitorWindow</name>
    <message>
        <source>msgmonitor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>file, -, tcp://host:port, ntrip://[user:password@]host[:port]/mountpoint or serial:///dev/ttyUSB0?baud=115200</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Messages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Last message</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Intervals and gaps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Event log</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enter an input and press Start.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Message</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Field</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dictionary</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>reading</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stopped</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (%2): %3 bytes, %4 frames, %5 bytes outside frames, %6 CRC errors</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Last message: %1 %2 %3</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PathExpression</name>
    <message>
        <source>Unable to resolve the following path expression to a single Field Info: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to resolve the following path expression to a single Message Info: %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Unsigned integer on %1 bits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Signed integer on %1 bits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>IEEE float on %1 bits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Character on %1 bits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Byte on %1 bits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Message of type %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown type</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>u%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>i%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>f%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>c%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>b%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>N/A</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Rtcm3Decoder</name>
    <message>
        <source>%1: frame of %2 bytes is shorter than a frame&apos;s header and CRC</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: frame of %2 bytes is shorter than the %3 bytes its header declares</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: payload of %2 bytes holds no message number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: message %2: %3</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Rtcm3Encoder</name>
    <message>
        <source>characters of 8 bits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>two&apos;s complement</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>sign-magnitude</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unsigned</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, %2 bits: %3 to %4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 has no field %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 has no value %3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 does not fit %2 of %3 (%4)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 is not a text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 is not a group of records</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 %2 of a record of %3 does not fit the %4 bits of %5</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 is %3 but its records give %4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 would take %3 bits; it has at most 64</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>two records of %1 in %2 take the same place in the masks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 has %3 bits set but %4 has %5</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 values in %2 of %3 do not fit %4 (%5)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 is %3 but %4 has %5</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the payload of %1 takes %2 bytes; a frame holds at most %3</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Rtcm3Framer</name>
    <message>
        <source> of %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: incomplete frame at stream offset %2: %3%4 bytes when the input ended</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: %2 bytes outside frames at stream offset %3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: more bytes outside frames, counted without their offsets</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Rtcm3Message</name>
    <message>
        <source>%1 of %2 bits exceeds 64 bits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (%2 bits at bit %3) overruns the payload of %4 bits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (%2 values of %3 bits at bit %4) overruns the payload of %5 bits</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScanInput</name>
    <message>
        <source>bad input URL %1: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a host and a port are needed (tcp://host:port)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a host is needed (ntrip://[user:password@]host[:port]/mountpoint)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a device is needed (serial:///dev/ttyUSB0?baud=115200)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the baud rate must be a positive whole number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unknown kind of input %1 (use a file, -, tcp://, ntrip:// or serial://)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cannot open %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cannot read %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: the caster refused: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: no mount point given; the caster&apos;s source table:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: the caster has no mount point %2; its source table:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cannot connect to %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: the caster closed the connection without an answer</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>StatisticsTableModel</name>
    <message>
        <source>(unknown)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Message</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Title</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Count</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Regular interval</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Last interval</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Regular now</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gaps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Missing epochs</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>StreamScanner</name>
    <message>
        <source>Input: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stream time: %1 to %2 (%3 s)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bytes: %1, frames: %2, bytes outside frames: %3, CRC errors: %4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Message</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Title</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Count</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Regular</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Intervals (most frequent)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gaps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Missing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 ms x%2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>(unknown)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>  %1: %2 missing from %3 (every %4 ms)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gaps:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Events:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Event log:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>... and %1 more (--json lists them all)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Station:</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Try &apos;msgscan --help&apos; for more information.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scans an RTCM 3 stream and reports its messages, rates, gaps, errors and station.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>input</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A file, - for standard input, tcp://host:port, ntrip://[user:password@]host[:port]/mountpoint or serial:///dev/ttyUSB0?baud=115200.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write the report (or each dumped message) as JSON.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show every message of the types that the path expression matches, with its matching fields, e.g. &apos;RTCM3:1005:*&apos;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>expression</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dump raw values, unscaled.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dump these fields (comma-separated) in hexadecimal.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>fields</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop a live scan after this many seconds.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>seconds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reconnect a dropped input after this many seconds.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no input given</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>one input only, not %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>bad --duration %1: not a number of seconds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>bad --reconnect %1: not a whole number of seconds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>bad --date %1: not a date YYYY-MM-DD</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Try &apos;msgmonitor --help&apos; for more information.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shows an RTCM 3 stream as it arrives: its messages, rates, gaps, fields and events.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A file, - for standard input, tcp://host:port, ntrip://[user:password@]host[:port]/mountpoint or serial:///dev/ttyUSB0?baud=115200; the bundled station stream when none is given.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write a picture of the window to this PNG file when the input (a file) has ended, then quit.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no input given, and no bundled stream found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The UTC date (YYYY-MM-DD) whose GPS week the stream&apos;s times fall in until the stream tells its week; by default the week that a file&apos;s first messages tell, else today.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
