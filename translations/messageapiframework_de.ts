<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>DictionaryTreeModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Scale factor</source>
        <translation>Skalenfaktor</translation>
    </message>
</context>
<context>
    <name>EventLogModel</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
</context>
<context>
    <name>FieldInfo</name>
    <message>
        <source>Unknown unit enum value %1</source>
        <translation>Unbekannter Wert %1 der Einheitenaufzählung</translation>
    </message>
    <message>
        <source>unknown unit</source>
        <translation>unbekannte Einheit</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>n. v.</translation>
    </message>
</context>
<context>
    <name>IntervalChart</name>
    <message>
        <source>Select a message type</source>
        <translation>Einen Nachrichtentyp auswählen</translation>
    </message>
    <message>
        <source>Intervals of %1</source>
        <translation>Intervalle von %1</translation>
    </message>
    <message>
        <source>No intervals yet</source>
        <translation>Noch keine Intervalle</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>Gaps over time: %1</source>
        <translation>Lücken im Zeitverlauf: %1</translation>
    </message>
    <message>
        <source>No gaps</source>
        <translation>Keine Lücken</translation>
    </message>
</context>
<context>
    <name>MessageApiEvent</name>
    <message>
        <source>Connection Opened</source>
        <translation>Verbindung geöffnet</translation>
    </message>
    <message>
        <source>Connection Closed</source>
        <translation>Verbindung geschlossen</translation>
    </message>
    <message>
        <source>CRC Error</source>
        <translation>CRC-Fehler</translation>
    </message>
    <message>
        <source>Unknown Message</source>
        <translation>Unbekannte Nachricht</translation>
    </message>
    <message>
        <source>Decoder Error</source>
        <translation>Decoderfehler</translation>
    </message>
    <message>
        <source>Application Error</source>
        <translation>Anwendungsfehler</translation>
    </message>
    <message>
        <source>Client Error</source>
        <translation>Client-Fehler</translation>
    </message>
    <message>
        <source>[Event discarded in future:] </source>
        <translation>[Ereignis wird künftig verworfen:] </translation>
    </message>
</context>
<context>
    <name>MessageDump</name>
    <message>
        <source>bad --dump expression %1: it matches no field of the dictionary</source>
        <translation>ungültiger Ausdruck für --dump %1: er trifft auf kein Feld des Wörterbuchs zu</translation>
    </message>
</context>
<context>
    <name>MessageFieldsModel</name>
    <message>
        <source>(confidential)</source>
        <translation>(vertraulich)</translation>
    </message>
    <message numerus="yes">
        <source>... (%n values)</source>
        <translation>
            <numerusform>... (%n Wert)</numerusform>
            <numerusform>... (%n Werte)</numerusform>
        </translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Raw</source>
        <translation>Rohwert</translation>
    </message>
    <message>
        <source>Hexadecimal</source>
        <translation>Hexadezimal</translation>
    </message>
</context>
<context>
    <name>MessageSource</name>
    <message>
        <source>%1 connection opened</source>
        <translation>Verbindung %1 geöffnet</translation>
    </message>
    <message>
        <source>%1 connection closed</source>
        <translation>Verbindung %1 geschlossen</translation>
    </message>
    <message>
        <source>%1 CRC error</source>
        <translation>CRC-Fehler in %1</translation>
    </message>
</context>
<context>
    <name>MessageStatistics</name>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 Hz/</source>
        <translation>%1 Hz/</translation>
    </message>
    <message>
        <source>%1 Hz</source>
        <translation>%1 Hz</translation>
    </message>
</context>
<context>
    <name>MonitorWindow</name>
    <message>
        <source>msgmonitor</source>
        <translation>msgmonitor</translation>
    </message>
    <message>
        <source>Input</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Input:</source>
        <translation>Eingabe:</translation>
    </message>
    <message>
        <source>file, -, tcp://host:port, ntrip://[user:password@]host[:port]/mountpoint or serial:///dev/ttyUSB0?baud=115200</source>
        <translation>Datei, -, tcp://host:port, ntrip://[user:password@]host[:port]/mountpoint oder serial:///dev/ttyUSB0?baud=115200</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Starten</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>Nachrichten</translation>
    </message>
    <message>
        <source>Last message</source>
        <translation>Letzte Nachricht</translation>
    </message>
    <message>
        <source>Intervals and gaps</source>
        <translation>Intervalle und Lücken</translation>
    </message>
    <message>
        <source>Event log</source>
        <translation>Ereignisprotokoll</translation>
    </message>
    <message>
        <source>Enter an input and press Start.</source>
        <translation>Eine Eingabe angeben und Starten drücken.</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Nachricht</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Dictionary</source>
        <translation>Wörterbuch</translation>
    </message>
    <message>
        <source>reading</source>
        <translation>liest</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>angehalten</translation>
    </message>
    <message>
        <source>%1 (%2): %3 bytes, %4 frames, %5 bytes outside frames, %6 CRC errors</source>
        <translation>%1 (%2): %3 Bytes, %4 Rahmen, %5 Bytes außerhalb von Rahmen, %6 CRC-Fehler</translation>
    </message>
    <message>
        <source>Last message: %1 %2 %3</source>
        <translation>Letzte Nachricht: %1 %2 %3</translation>
    </message>
</context>
<context>
    <name>PathExpression</name>
    <message>
        <source>Unable to resolve the following path expression to a single Field Info: %1</source>
        <translation>Der folgende Pfadausdruck lässt sich nicht auf genau eine Feldbeschreibung auflösen: %1</translation>
    </message>
    <message>
        <source>Unable to resolve the following path expression to a single Message Info: %1</source>
        <translation>Der folgende Pfadausdruck lässt sich nicht auf genau eine Nachrichtenbeschreibung auflösen: %1</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Unsigned integer on %1 bits</source>
        <translation>Vorzeichenlose Ganzzahl mit %1 Bit</translation>
    </message>
    <message>
        <source>Signed integer on %1 bits</source>
        <translation>Vorzeichenbehaftete Ganzzahl mit %1 Bit</translation>
    </message>
    <message>
        <source>IEEE float on %1 bits</source>
        <translation>IEEE-Gleitkommazahl mit %1 Bit</translation>
    </message>
    <message>
        <source>Character on %1 bits</source>
        <translation>Zeichen mit %1 Bit</translation>
    </message>
    <message>
        <source>Byte on %1 bits</source>
        <translation>Byte mit %1 Bit</translation>
    </message>
    <message>
        <source>Message of type %1</source>
        <translation>Nachricht vom Typ %1</translation>
    </message>
    <message>
        <source>Invalid</source>
        <translation>Ungültig</translation>
    </message>
    <message>
        <source>Unknown type</source>
        <translation>Unbekannter Typ</translation>
    </message>
    <message>
        <source>u%1</source>
        <translation>u%1</translation>
    </message>
    <message>
        <source>i%1</source>
        <translation>i%1</translation>
    </message>
    <message>
        <source>f%1</source>
        <translation>f%1</translation>
    </message>
    <message>
        <source>c%1</source>
        <translation>c%1</translation>
    </message>
    <message>
        <source>b%1</source>
        <translation>b%1</translation>
    </message>
    <message>
        <source>%1</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>n. v.</translation>
    </message>
</context>
<context>
    <name>Rtcm3Decoder</name>
    <message>
        <source>%1: frame of %2 bytes is shorter than a frame&apos;s header and CRC</source>
        <translation>%1: Der Rahmen von %2 Bytes ist kürzer als Kopf und CRC eines Rahmens</translation>
    </message>
    <message>
        <source>%1: frame of %2 bytes is shorter than the %3 bytes its header declares</source>
        <translation>%1: Der Rahmen von %2 Bytes ist kürzer als die %3 Bytes, die sein Kopf angibt</translation>
    </message>
    <message>
        <source>%1: payload of %2 bytes holds no message number</source>
        <translation>%1: Die Nutzdaten von %2 Bytes enthalten keine Nachrichtennummer</translation>
    </message>
    <message>
        <source>%1: message %2: %3</source>
        <translation>%1: Nachricht %2: %3</translation>
    </message>
</context>
<context>
    <name>Rtcm3Encoder</name>
    <message>
        <source>characters of 8 bits</source>
        <translation>Zeichen zu 8 Bit</translation>
    </message>
    <message>
        <source>two&apos;s complement</source>
        <translation>Zweierkomplement</translation>
    </message>
    <message>
        <source>sign-magnitude</source>
        <translation>Vorzeichen und Betrag</translation>
    </message>
    <message>
        <source>unsigned</source>
        <translation>vorzeichenlos</translation>
    </message>
    <message>
        <source>%1, %2 bits: %3 to %4</source>
        <translation>%1, %2 Bit: %3 bis %4</translation>
    </message>
    <message>
        <source>%1 has no field %2</source>
        <translation>%1 hat kein Feld %2</translation>
    </message>
    <message>
        <source>%1 of %2 has no value %3</source>
        <translation>%1 von %2 hat keinen Wert %3</translation>
    </message>
    <message>
        <source>%1 does not fit %2 of %3 (%4)</source>
        <translation>%1 passt nicht in %2 von %3 (%4)</translation>
    </message>
    <message>
        <source>%1 of %2 is not a text</source>
        <translation>%1 von %2 ist kein Text</translation>
    </message>
    <message>
        <source>%1 of %2 is not a group of records</source>
        <translation>%1 von %2 ist keine Gruppe von Datensätzen</translation>
    </message>
    <message>
        <source>%1 %2 of a record of %3 does not fit the %4 bits of %5</source>
        <translation>%1 %2 eines Datensatzes von %3 passt nicht in die %4 Bit von %5</translation>
    </message>
    <message>
        <source>%1 of %2 is %3 but its records give %4</source>
        <translation>%1 von %2 ist %3, die Datensätze ergeben aber %4</translation>
    </message>
    <message>
        <source>%1 of %2 would take %3 bits; it has at most 64</source>
        <translation>%1 von %2 bräuchte %3 Bit; es hat höchstens 64</translation>
    </message>
    <message>
        <source>two records of %1 in %2 take the same place in the masks</source>
        <translation>zwei Datensätze von %1 in %2 belegen dieselbe Stelle in den Masken</translation>
    </message>
    <message>
        <source>%1 of %2 has %3 bits set but %4 has %5</source>
        <translation>in %1 von %2 sind %3 Bit gesetzt, %4 hat aber %5</translation>
    </message>
    <message>
        <source>%1 values in %2 of %3 do not fit %4 (%5)</source>
        <translation>%1 Werte in %2 von %3 passen nicht in %4 (%5)</translation>
    </message>
    <message>
        <source>%1 of %2 is %3 but %4 has %5</source>
        <translation>%1 von %2 ist %3, %4 hat aber %5</translation>
    </message>
    <message>
        <source>the payload of %1 takes %2 bytes; a frame holds at most %3</source>
        <translation>die Nutzdaten von %1 belegen %2 Bytes; ein Rahmen fasst höchstens %3</translation>
    </message>
</context>
<context>
    <name>Rtcm3Framer</name>
    <message>
        <source> of %1</source>
        <translation> von %1</translation>
    </message>
    <message>
        <source>%1: incomplete frame at stream offset %2: %3%4 bytes when the input ended</source>
        <translation>%1: unvollständiger Rahmen an Position %2 des Datenstroms: %3%4 Bytes, als die Eingabe endete</translation>
    </message>
    <message>
        <source>%1: %2 bytes outside frames at stream offset %3</source>
        <translation>%1: %2 Bytes außerhalb von Rahmen an Position %3 des Datenstroms</translation>
    </message>
    <message>
        <source>%1: more bytes outside frames, counted without their offsets</source>
        <translation>%1: weitere Bytes außerhalb von Rahmen, ohne ihre Positionen gezählt</translation>
    </message>
</context>
<context>
    <name>Rtcm3Message</name>
    <message>
        <source>%1 of %2 bits exceeds 64 bits</source>
        <translation>%1 mit %2 Bit überschreitet 64 Bit</translation>
    </message>
    <message>
        <source>%1 (%2 bits at bit %3) overruns the payload of %4 bits</source>
        <translation>%1 (%2 Bit ab Bit %3) reicht über die Nutzdaten von %4 Bit hinaus</translation>
    </message>
    <message>
        <source>%1 (%2 values of %3 bits at bit %4) overruns the payload of %5 bits</source>
        <translation>%1 (%2 Werte zu je %3 Bit ab Bit %4) reicht über die Nutzdaten von %5 Bit hinaus</translation>
    </message>
</context>
<context>
    <name>ScanInput</name>
    <message>
        <source>bad input URL %1: </source>
        <translation>ungültige Eingabe-URL %1: </translation>
    </message>
    <message>
        <source>a host and a port are needed (tcp://host:port)</source>
        <translation>Host und Port werden benötigt (tcp://host:port)</translation>
    </message>
    <message>
        <source>a host is needed (ntrip://[user:password@]host[:port]/mountpoint)</source>
        <translation>ein Host wird benötigt (ntrip://[user:password@]host[:port]/mountpoint)</translation>
    </message>
    <message>
        <source>a device is needed (serial:///dev/ttyUSB0?baud=115200)</source>
        <translation>ein Gerät wird benötigt (serial:///dev/ttyUSB0?baud=115200)</translation>
    </message>
    <message>
        <source>the baud rate must be a positive whole number</source>
        <translation>die Baudrate muss eine positive ganze Zahl sein</translation>
    </message>
    <message>
        <source>unknown kind of input %1 (use a file, -, tcp://, ntrip:// or serial://)</source>
        <translation>unbekannte Art von Eingabe %1 (möglich sind eine Datei, -, tcp://, ntrip:// oder serial://)</translation>
    </message>
    <message>
        <source>cannot open %1: %2</source>
        <translation>%1 kann nicht geöffnet werden: %2</translation>
    </message>
    <message>
        <source>cannot read %1: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>%1: the caster refused: %2</source>
        <translation>%1: Der Caster hat abgelehnt: %2</translation>
    </message>
    <message>
        <source>%1: no mount point given; the caster&apos;s source table:</source>
        <translation>%1: Kein Mountpoint angegeben; die Quelltabelle des Casters:</translation>
    </message>
    <message>
        <source>%1: the caster has no mount point %2; its source table:</source>
        <translation>%1: Der Caster hat keinen Mountpoint %2; seine Quelltabelle:</translation>
    </message>
    <message>
        <source>cannot connect to %1: %2</source>
        <translation>keine Verbindung zu %1 möglich: %2</translation>
    </message>
    <message>
        <source>%1: the caster closed the connection without an answer</source>
        <translation>%1: Der Caster hat die Verbindung ohne Antwort geschlossen</translation>
    </message>
</context>
<context>
    <name>StatisticsTableModel</name>
    <message>
        <source>(unknown)</source>
        <translation>(unbekannt)</translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation>%1/s</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Nachricht</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>Rate</source>
        <translation>Rate</translation>
    </message>
    <message>
        <source>Regular interval</source>
        <translation>Regelintervall</translation>
    </message>
    <message>
        <source>Last interval</source>
        <translation>Letztes Intervall</translation>
    </message>
    <message>
        <source>Regular now</source>
        <translation>Jetzt regelmäßig</translation>
    </message>
    <message>
        <source>Gaps</source>
        <translation>Lücken</translation>
    </message>
    <message>
        <source>Missing epochs</source>
        <translation>Fehlende Epochen</translation>
    </message>
</context>
<context>
    <name>StreamScanner</name>
    <message>
        <source>Input: %1</source>
        <translation>Eingabe: %1</translation>
    </message>
    <message>
        <source>Stream time: %1 to %2 (%3 s)</source>
        <translation>Zeit des Datenstroms: %1 bis %2 (%3 s)</translation>
    </message>
    <message>
        <source>Bytes: %1, frames: %2, bytes outside frames: %3, CRC errors: %4</source>
        <translation>Bytes: %1, Rahmen: %2, Bytes außerhalb von Rahmen: %3, CRC-Fehler: %4</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Nachricht</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Count</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>Rate</source>
        <translation>Rate</translation>
    </message>
    <message>
        <source>Regular</source>
        <translation>Regelintervall</translation>
    </message>
    <message>
        <source>Intervals (most frequent)</source>
        <translation>Intervalle (häufigste)</translation>
    </message>
    <message>
        <source>Gaps</source>
        <translation>Lücken</translation>
    </message>
    <message>
        <source>Missing</source>
        <translation>Fehlend</translation>
    </message>
    <message>
        <source>%1 ms x%2</source>
        <translation>%1 ms x%2</translation>
    </message>
    <message>
        <source>(unknown)</source>
        <translation>(unbekannt)</translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation>%1/s</translation>
    </message>
    <message>
        <source>  %1: %2 missing from %3 (every %4 ms)</source>
        <translation>  %1: %2 fehlen ab %3 (alle %4 ms)</translation>
    </message>
    <message>
        <source>Gaps:</source>
        <translation>Lücken:</translation>
    </message>
    <message>
        <source>Events:</source>
        <translation>Ereignisse:</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>Event log:</source>
        <translation>Ereignisprotokoll:</translation>
    </message>
    <message>
        <source>... and %1 more (--json lists them all)</source>
        <translation>... und %1 weitere (--json listet alle auf)</translation>
    </message>
    <message>
        <source>Station:</source>
        <translation>Station:</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Try &apos;msgscan --help&apos; for more information.</source>
        <translation>Weitere Informationen mit &apos;msgscan --help&apos;.</translation>
    </message>
    <message>
        <source>Scans an RTCM 3 stream and reports its messages, rates, gaps, errors and station.</source>
        <translation>Untersucht einen RTCM-3-Datenstrom und berichtet über seine Nachrichten, Raten, Lücken, Fehler und die Station.</translation>
    </message>
    <message>
        <source>input</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>A file, - for standard input, tcp://host:port, ntrip://[user:password@]host[:port]/mountpoint or serial:///dev/ttyUSB0?baud=115200.</source>
        <translation>Eine Datei, - für die Standardeingabe, tcp://host:port, ntrip://[user:password@]host[:port]/mountpoint oder serial:///dev/ttyUSB0?baud=115200.</translation>
    </message>
    <message>
        <source>Write the report (or each dumped message) as JSON.</source>
        <translation>Den Bericht (oder jede ausgegebene Nachricht) als JSON schreiben.</translation>
    </message>
    <message>
        <source>Show every message of the types that the path expression matches, with its matching fields, e.g. &apos;RTCM3:1005:*&apos;.</source>
        <translation>Jede Nachricht der Typen zeigen, auf die der Pfadausdruck zutrifft, mit ihren zutreffenden Feldern, z. B. &apos;RTCM3:1005:*&apos;.</translation>
    </message>
    <message>
        <source>expression</source>
        <translation>Ausdruck</translation>
    </message>
    <message>
        <source>Dump raw values, unscaled.</source>
        <translation>Rohwerte unskaliert ausgeben.</translation>
    </message>
    <message>
        <source>Dump these fields (comma-separated) in hexadecimal.</source>
        <translation>Diese Felder (durch Kommas getrennt) hexadezimal ausgeben.</translation>
    </message>
    <message>
        <source>fields</source>
        <translation>Felder</translation>
    </message>
    <message>
        <source>Stop a live scan after this many seconds.</source>
        <translation>Eine laufende Untersuchung nach so vielen Sekunden beenden.</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>Reconnect a dropped input after this many seconds.</source>
        <translation>Eine abgebrochene Eingabe nach so vielen Sekunden neu verbinden.</translation>
    </message>
    <message>
        <source>date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>no input given</source>
        <translation>keine Eingabe angegeben</translation>
    </message>
    <message>
        <source>one input only, not %1</source>
        <translation>nur eine Eingabe, nicht %1</translation>
    </message>
    <message>
        <source>bad --duration %1: not a number of seconds</source>
        <translation>ungültige Dauer für --duration %1: keine Anzahl Sekunden</translation>
    </message>
    <message>
        <source>bad --reconnect %1: not a whole number of seconds</source>
        <translation>ungültiger Wert für --reconnect %1: keine ganze Anzahl Sekunden</translation>
    </message>
    <message>
        <source>bad --date %1: not a date YYYY-MM-DD</source>
        <translation>ungültiges Datum für --date %1: kein Datum der Form JJJJ-MM-TT</translation>
    </message>
    <message>
        <source>Try &apos;msgmonitor --help&apos; for more information.</source>
        <translation>Weitere Informationen mit &apos;msgmonitor --help&apos;.</translation>
    </message>
    <message>
        <source>Shows an RTCM 3 stream as it arrives: its messages, rates, gaps, fields and events.</source>
        <translation>Zeigt einen RTCM-3-Datenstrom, während er eintrifft: seine Nachrichten, Raten, Lücken, Felder und Ereignisse.</translation>
    </message>
    <message>
        <source>A file, - for standard input, tcp://host:port, ntrip://[user:password@]host[:port]/mountpoint or serial:///dev/ttyUSB0?baud=115200; the bundled station stream when none is given.</source>
        <translation>Eine Datei, - für die Standardeingabe, tcp://host:port, ntrip://[user:password@]host[:port]/mountpoint oder serial:///dev/ttyUSB0?baud=115200; ohne Angabe der mitgelieferte Datenstrom einer Referenzstation.</translation>
    </message>
    <message>
        <source>Write a picture of the window to this PNG file when the input (a file) has ended, then quit.</source>
        <translation>Ein Bild des Fensters in diese PNG-Datei schreiben, wenn die Eingabe (eine Datei) zu Ende ist, dann beenden.</translation>
    </message>
    <message>
        <source>no input given, and no bundled stream found</source>
        <translation>keine Eingabe angegeben und kein mitgelieferter Datenstrom gefunden</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>The UTC date (YYYY-MM-DD) whose GPS week the stream&apos;s times fall in until the stream tells its week; by default the week that a file&apos;s first messages tell, else today.</source>
        <translation>Das UTC-Datum (JJJJ-MM-TT), in dessen GPS-Woche die Zeiten des Datenstroms liegen, bis der Datenstrom seine Woche selbst angibt; standardmäßig die Woche, die die ersten Nachrichten einer Datei angeben, sonst heute.</translation>
    </message>
</context>
</TS>
