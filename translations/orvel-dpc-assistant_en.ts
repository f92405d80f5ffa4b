<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>BatchRun</name>
    <message numerus="yes">
        <source>%n camera(s) found.</source>
        <translation>
            <numerusform>%n camera found.</numerusform>
            <numerusform>%n cameras found.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FrameCapture</name>
    <message numerus="yes">
        <source>%n frame(s) were kept.</source>
        <translation>
            <numerusform>%n frame was kept.</numerusform>
            <numerusform>%n frames were kept.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>UXCDefectPixelCorrection</name>
    <message numerus="yes">
        <source>%n image(s) removed.</source>
        <translation>
            <numerusform>%n image removed.</numerusform>
            <numerusform>%n images removed.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n bright image(s) added.</source>
        <translation>
            <numerusform>%n bright image added.</numerusform>
            <numerusform>%n bright images added.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n dark image(s) added.</source>
        <translation>
            <numerusform>%n dark image added.</numerusform>
            <numerusform>%n dark images added.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>UXCMapFiles</name>
    <message numerus="yes">
        <source>Map of %n entry(s) saved to %1.</source>
        <translation>
            <numerusform>Map of %n entry saved to %1.</numerusform>
            <numerusform>Map of %n entries saved to %1.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>UXCMapSlotActions</name>
    <message numerus="yes">
        <source>Uploaded %n entry(s) to %1.</source>
        <translation>
            <numerusform>Uploaded %n entry to %1.</numerusform>
            <numerusform>Uploaded %n entries to %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Downloaded %n entry(s) from %1 to %2.</source>
        <translation>
            <numerusform>Downloaded %n entry from %1 to %2.</numerusform>
            <numerusform>Downloaded %n entries from %1 to %2.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>UXCMapStatus</name>
    <message numerus="yes">
        <source>Map generated: %n defect pixel(s).</source>
        <translation>
            <numerusform>Map generated: %n defect pixel.</numerusform>
            <numerusform>Map generated: %n defect pixels.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>UXCPanelMessages</name>
    <message numerus="yes">
        <source>%1: %n entry(s) lie outside the sensor (%2 x %3).</source>
        <translation>
            <numerusform>%1: %n entry lies outside the sensor (%2 x %3).</numerusform>
            <numerusform>%1: %n entries lie outside the sensor (%2 x %3).</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n line(s) skipped as malformed</source>
        <translation>
            <numerusform>%n line skipped as malformed</numerusform>
            <numerusform>%n lines skipped as malformed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n duplicate coordinate(s)</source>
        <translation>
            <numerusform>%n duplicate coordinate</numerusform>
            <numerusform>%n duplicate coordinates</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n entry(s) beyond the camera&apos;s maximum dropped</source>
        <translation>
            <numerusform>%n entry beyond the camera&apos;s maximum dropped</numerusform>
            <numerusform>%n entries beyond the camera&apos;s maximum dropped</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n entry(s) will be written to &apos;%1&apos;</source>
        <translation>
            <numerusform>%n entry will be written to &apos;%1&apos;</numerusform>
            <numerusform>%n entries will be written to &apos;%1&apos;</numerusform>
        </translation>
    </message>
</context>
</TS>
