<?xml version='1.0' encoding='utf-8'?>
<TS version="2.1" language="de_DE">
<context>
    <name>ApiController</name>
    <message>
        <source>Failed to get camera extended ID</source>
        <translation>Erweiterte Kamera-ID konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>Failed to get camera ID for %1</source>
        <translation>Kamera-ID von %1 konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>Failed to get camera model for %1</source>
        <translation>Kameramodell von %1 konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>Failed to get camera name for %1</source>
        <translation>Kameraname von %1 konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>Failed to get camera serial number for %1</source>
        <translation>Seriennummer von %1 konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>Failed to get camera interface ID for %1</source>
        <translation>Schnittstellen-ID von %1 konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>Failed to get camera transport layer for %1</source>
        <translation>Transportschicht von %1 konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>Failed to get camera transport layer name for %1</source>
        <translation>Name der Transportschicht von %1 konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>Failed to get camera TL path for %1</source>
        <translation>TL-Pfad von %1 konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>Failed to get camera access mode for %1</source>
        <translation>Zugriffsmodus von %1 konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>Failed to get camera for %1</source>
        <translation>Kamera %1 konnte nicht ermittelt werden</translation>
    </message>
    <message>
        <source>Failed to open camera %1</source>
        <translation>Kamera %1 konnte nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Failed to close camera %1</source>
        <translation>Kamera %1 konnte nicht geschlossen werden</translation>
    </message>
    <message>
        <source>Success.</source>
        <translation>Erfolgreich.</translation>
    </message>
    <message>
        <source>Unexpected fault in ZebApi or driver.</source>
        <translation>Unerwarteter Fehler in der ZebApi oder im Treiber.</translation>
    </message>
    <message>
        <source>API not started.</source>
        <translation>API nicht gestartet.</translation>
    </message>
    <message>
        <source>Not found.</source>
        <translation>Nicht gefunden.</translation>
    </message>
    <message>
        <source>Invalid handle </source>
        <translation>Ungültiges Handle </translation>
    </message>
    <message>
        <source>Device not open.</source>
        <translation>Gerät nicht geöffnet.</translation>
    </message>
    <message>
        <source>Invalid access.</source>
        <translation>Ungültiger Zugriff.</translation>
    </message>
    <message>
        <source>Bad parameter.</source>
        <translation>Fehlerhafter Parameter.</translation>
    </message>
    <message>
        <source>Wrong DLL version.</source>
        <translation>Falsche DLL-Version.</translation>
    </message>
    <message>
        <source>More data returned than memory provided.</source>
        <translation>Mehr Daten geliefert als Speicher bereitgestellt.</translation>
    </message>
    <message>
        <source>Wrong type.</source>
        <translation>Falscher Typ.</translation>
    </message>
    <message>
        <source>Invalid value.</source>
        <translation>Ungültiger Wert.</translation>
    </message>
    <message>
        <source>Timeout.</source>
        <translation>Zeitüberschreitung.</translation>
    </message>
    <message>
        <source>TL error.</source>
        <translation>TL-Fehler.</translation>
    </message>
    <message>
        <source>Resource not available.</source>
        <translation>Ressource nicht verfügbar.</translation>
    </message>
    <message>
        <source>Invalid call.</source>
        <translation>Ungültiger Aufruf.</translation>
    </message>
    <message>
        <source>TL not loaded.</source>
        <translation>TL nicht geladen.</translation>
    </message>
    <message>
        <source>Not implemented.</source>
        <translation>Nicht implementiert.</translation>
    </message>
    <message>
        <source>Not supported.</source>
        <translation>Nicht unterstützt.</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>%1 (error: %2)</source>
        <translation>%1 (Fehler: %2)</translation>
    </message>
    <message>
        <source>Error: %1</source>
        <translation>Fehler: %1</translation>
    </message>
</context>
<context>
    <name>BasicMainWindow</name>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>About Qt</source>
        <translation>Über Qt</translation>
    </message>
    <message>
        <source>Camera List</source>
        <translation>Kameraliste</translation>
    </message>
    <message>
        <source>Log View</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Camera selected: %1</source>
        <translation>Kamera ausgewählt: %1</translation>
    </message>
    <message>
        <source>Camera unselected: %1</source>
        <translation>Kamera abgewählt: %1</translation>
    </message>
    <message>
        <source>Camera opened: %1</source>
        <translation>Kamera geöffnet: %1</translation>
    </message>
    <message>
        <source>Camera closed: %1</source>
        <translation>Kamera geschlossen: %1</translation>
    </message>
    <message>
        <source>Camera disconnected: %1 (%2)</source>
        <translation>Kamera getrennt: %1 (%2)</translation>
    </message>
    <message>
        <source>%1 is a Qt application using the ZebCPP API.</source>
        <translation>%1 ist eine Qt-Anwendung, die die ZebCPP-API verwendet.</translation>
    </message>
    <message>
        <source>Version: %1</source>
        <translation>Version: %1</translation>
    </message>
    <message>
        <source>Published by Corvane Optics Technologies. All rights reserved.</source>
        <translation>Herausgegeben von Corvane Optics Technologies. Alle Rechte vorbehalten.</translation>
    </message>
</context>
<context>
    <name>BatchCommandLine</name>
    <message>
        <source>Generates the defect pixel map of many cameras at once, as the assistant does for one:
reads each camera's dark and bright bitmap series from folders or captures them from
the camera, builds the map with the assistant's thresholds and correction codes,
optionally saves it, uploads it into a map slot and reads the slot back to verify it.
One worker per camera; a failing camera does not stop the others.
Writes a JSON report of the run and one line per camera.
Exit status: 0 when every camera succeeded, 1 when one failed, 2 for a wrong command line.
Paths may contain {serial}, {model} and {id} (the camera's plain ID).
Cameras come from the camera SDK: ZEB_SIM_CAMERAS names simulated cameras,
ZEB_GEV_ADDRESSES limits GigE Vision discovery to the given addresses.</source>
        <translation>Erzeugt die Defektpixelkarte vieler Kameras auf einmal, wie der Assistent für eine:
liest die dunklen und hellen Bitmap-Serien jeder Kamera aus Ordnern oder nimmt sie mit
der Kamera auf, erzeugt die Karte mit den Schwellwerten und Korrekturcodes des Assistenten,
speichert sie auf Wunsch, lädt sie in einen Kartenplatz und liest den Platz zur Prüfung zurück.
Ein Arbeiter je Kamera; eine fehlerhafte Kamera hält die anderen nicht auf.
Schreibt einen JSON-Bericht des Laufs und eine Zeile je Kamera.
Exit-Status: 0, wenn jede Kamera gelang, 1, wenn eine fehlschlug, 2 bei falscher Befehlszeile.
Pfade dürfen {serial}, {model} und {id} (die einfache ID der Kamera) enthalten.
Kameras kommen vom Kamera-SDK: ZEB_SIM_CAMERAS nennt simulierte Kameras,
ZEB_GEV_ADDRESSES beschränkt die GigE-Vision-Suche auf die angegebenen Adressen.</translation>
    </message>
    <message>
        <source>Shows this help and exits.</source>
        <translation>Zeigt diese Hilfe und endet.</translation>
    </message>
    <message>
        <source>Lists every camera the SDK finds, with its extended ID, serial number, model, access and compatibility, and exits.</source>
        <translation>Listet jede Kamera, die das SDK findet, mit erweiterter ID, Seriennummer, Modell, Zugriff und Kompatibilität, und endet.</translation>
    </message>
    <message>
        <source>Selects a camera by extended ID, plain ID or serial number (repeatable).</source>
        <translation>Wählt eine Kamera nach erweiterter ID, einfacher ID oder Seriennummer (wiederholbar).</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Selects the cameras whose model name matches the pattern (* and ? wildcards; repeatable).</source>
        <translation>Wählt die Kameras, deren Modellname zum Muster passt (Platzhalter * und ?; wiederholbar).</translation>
    </message>
    <message>
        <source>pattern</source>
        <translation>Muster</translation>
    </message>
    <message>
        <source>Selects every compatible camera.</source>
        <translation>Wählt jede kompatible Kamera.</translation>
    </message>
    <message>
        <source>The camera's dark bitmaps: a folder (all *.bmp in it) or a folder and a file name pattern such as images/{serial}/dark_*.bmp; taken in name order.</source>
        <translation>Die dunklen Bitmaps der Kamera: ein Ordner (alle *.bmp darin) oder ein Ordner mit Dateinamensmuster wie images/{serial}/dark_*.bmp; in Namensreihenfolge genommen.</translation>
    </message>
    <message>
        <source>path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>The camera's bright bitmaps, given like --dark (monochrome cameras; colour cameras use the dark series only).</source>
        <translation>Die hellen Bitmaps der Kamera, angegeben wie --dark (Monochromkameras; Farbkameras nutzen nur die dunkle Serie).</translation>
    </message>
    <message>
        <source>Grey-level margin of the dark test, at most 255 (default 16).</source>
        <translation>Grauwertspanne des Dunkeltests, höchstens 255 (Vorgabe 16).</translation>
    </message>
    <message>
        <source>N</source>
        <translation>N</translation>
    </message>
    <message>
        <source>Margin of the bright test in percent of the local average, at most 100 (default 12).</source>
        <translation>Spanne des Helltests in Prozent des lokalen Mittels, höchstens 100 (Vorgabe 12).</translation>
    </message>
    <message>
        <source>Uploads the map into this map slot (for example DefPixMap1) and verifies it. The factory map is never written.</source>
        <translation>Lädt die Karte in diesen Kartenplatz (zum Beispiel DefPixMap1) und prüft sie. Die Werkskarte wird nie beschrieben.</translation>
    </message>
    <message>
        <source>name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Confirms that the map overwrites the selected slot; without it no camera is written.</source>
        <translation>Bestätigt, dass die Karte den gewählten Platz überschreibt; ohne dies wird keine Kamera beschrieben.</translation>
    </message>
    <message>
        <source>Saves each map as &lt;serial&gt;.txt (text form) and &lt;serial&gt;.bin (container form) in this folder.</source>
        <translation>Speichert jede Karte als &lt;serial&gt;.txt (Textform) und &lt;serial&gt;.bin (Containerform) in diesem Ordner.</translation>
    </message>
    <message>
        <source>folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Writes the JSON report of the run to this file (default dpc-batch-report.json).</source>
        <translation>Schreibt den JSON-Bericht des Laufs in diese Datei (Vorgabe dpc-batch-report.json).</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Cameras worked on at once (default: the number of cores).</source>
        <translation>Gleichzeitig bearbeitete Kameras (Vorgabe: die Anzahl der Kerne).</translation>
    </message>
    <message>
        <source>Does everything but write to the cameras: no upload, slots stay unchanged.</source>
        <translation>Tut alles außer in die Kameras zu schreiben: kein Hochladen, die Plätze bleiben unverändert.</translation>
    </message>
    <message>
        <source>Does not read the slot back after the upload.</source>
        <translation>Liest den Platz nach dem Hochladen nicht zurück.</translation>
    </message>
    <message>
        <source>No progress display; the summary lines remain.</source>
        <translation>Keine Fortschrittsanzeige; die Zusammenfassungszeilen bleiben.</translation>
    </message>
    <message>
        <source>Unexpected argument: %1</source>
        <translation>Unerwartetes Argument: %1</translation>
    </message>
    <message>
        <source>A threshold must be a whole number up to 255 (absolute) or 100 (relative).</source>
        <translation>Ein Schwellwert muss eine ganze Zahl bis 255 (absolut) oder 100 (relativ) sein.</translation>
    </message>
    <message>
        <source>--jobs needs a number of at least 1.</source>
        <translation>--jobs braucht eine Zahl von mindestens 1.</translation>
    </message>
    <message>
        <source>Select cameras with --camera, --model or --all (see --help).</source>
        <translation>Wählen Sie Kameras mit --camera, --model oder --all (siehe --help).</translation>
    </message>
    <message>
        <source>Give the folders of the series with --dark and/or --bright, or --capture (see --help).</source>
        <translation>Geben Sie die Ordner der Serien mit --dark und/oder --bright an, oder --capture (siehe --help).</translation>
    </message>
    <message>
        <source>Captures the series from each camera instead of reading bitmaps, as the assistant's capture does: 16 frames each at the camera's exposure time and gain, dark with the lens covered, bright under uniform light at about half of full scale (a simulated camera gets no light, then half light).</source>
        <translation>Nimmt die Serien mit jeder Kamera auf, statt Bitmaps zu lesen, wie die Aufnahme des Assistenten: je 16 Bilder mit Belichtungszeit und Verstärkung der Kamera, dunkel mit abgedecktem Objektiv, hell unter gleichmäßigem Licht bei etwa halbem Vollausschlag (eine simulierte Kamera erhält kein Licht, dann halbes Licht).</translation>
    </message>
    <message>
        <source>--capture takes the series from the cameras: leave out --dark and --bright.</source>
        <translation>--capture nimmt die Serien mit den Kameras auf: lassen Sie --dark und --bright weg.</translation>
    </message>
</context>
<context>
    <name>BatchJob</name>
    <message>
        <source>Generate map failed: out of memory!</source>
        <translation>Karte erzeugen fehlgeschlagen: kein Speicher mehr!</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>FAILED</source>
        <translation>FEHLER</translation>
    </message>
    <message>
        <source>%1 %2: %3 flagged, %4 written%5, upload %6, verify %7</source>
        <translation>%1 %2: %3 markiert, %4 geschrieben%5, Hochladen %6, Prüfung %7</translation>
    </message>
    <message>
        <source> (capacity cut)</source>
        <translation> (durch Kapazität gekürzt)</translation>
    </message>
    <message>
        <source>opening</source>
        <translation>öffnen</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>checking the series</source>
        <translation>Serien prüfen</translation>
    </message>
    <message>
        <source>The folder '%1' does not exist.</source>
        <translation>Der Ordner '%1' existiert nicht.</translation>
    </message>
    <message>
        <source>No image in '%1' matches %2.</source>
        <translation>Kein Bild in '%1' passt zu %2.</translation>
    </message>
    <message>
        <source>A colour camera needs a dark series (--dark).</source>
        <translation>Eine Farbkamera braucht eine dunkle Serie (--dark).</translation>
    </message>
    <message>
        <source>Colour camera: the bright series is not used.</source>
        <translation>Farbkamera: die helle Serie wird nicht verwendet.</translation>
    </message>
    <message>
        <source>loading %1 %2/%3</source>
        <translation>lade %1 %2/%3</translation>
    </message>
    <message>
        <source>dark</source>
        <translation>dunkel</translation>
    </message>
    <message>
        <source>bright</source>
        <translation>hell</translation>
    </message>
    <message>
        <source>Loading image '%1' failed.</source>
        <translation>Laden des Bildes '%1' fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Loading '%1': Image format not supported.</source>
        <translation>Laden von '%1': Bildformat nicht unterstützt.</translation>
    </message>
    <message>
        <source>Loading '%1': incompatible image.</source>
        <translation>Laden von '%1': inkompatibles Bild.</translation>
    </message>
    <message>
        <source>Loading '%1': out of memory.</source>
        <translation>Laden von '%1': nicht genügend Speicher.</translation>
    </message>
    <message>
        <source>generating</source>
        <translation>erzeugen</translation>
    </message>
    <message>
        <source>Generate map failed: missing image parameters</source>
        <translation>Karte erzeugen fehlgeschlagen: Bildparameter fehlen</translation>
    </message>
    <message>
        <source>The map holds the first %1 of %2 flagged pixels (the camera's maximum).</source>
        <translation>Die Karte enthält die ersten %1 von %2 markierten Pixeln (das Maximum der Kamera).</translation>
    </message>
    <message>
        <source>The resulting number of defect pixels: %1; the maximum allowed is: %2.</source>
        <translation>Resultierende Anzahl Defektpixel: %1; höchstens erlaubt sind: %2.</translation>
    </message>
    <message>
        <source>saving</source>
        <translation>speichern</translation>
    </message>
    <message>
        <source>The folder '%1' cannot be created.</source>
        <translation>Der Ordner '%1' kann nicht angelegt werden.</translation>
    </message>
    <message>
        <source>Save to file failed!</source>
        <translation>Speichern in Datei fehlgeschlagen!</translation>
    </message>
    <message>
        <source>The camera has no map slot '%1' (it offers %2).</source>
        <translation>Die Kamera hat keinen Kartenplatz '%1' (sie bietet %2).</translation>
    </message>
    <message>
        <source>The map slot '%1' is write-protected (factory map).</source>
        <translation>Der Kartenplatz '%1' ist schreibgeschützt (Werkskarte).</translation>
    </message>
    <message>
        <source>Not uploaded: confirm with --yes that the map overwrites the selected map '%1'.</source>
        <translation>Nicht hochgeladen: bestätigen Sie mit --yes, dass die Karte die gewählte Karte '%1' überschreibt.</translation>
    </message>
    <message>
        <source>Stop streaming before uploading map to camera.</source>
        <translation>Beenden Sie den Bildeinzug, bevor Sie eine Karte in die Kamera laden.</translation>
    </message>
    <message>
        <source>Upload failed: empty map</source>
        <translation>Hochladen fehlgeschlagen: leere Karte</translation>
    </message>
    <message>
        <source>uploading</source>
        <translation>hochladen</translation>
    </message>
    <message>
        <source>verifying</source>
        <translation>prüfen</translation>
    </message>
    <message>
        <source>The slot '%1' holds %2 entries, %3 expected; they first differ at entry %4.</source>
        <translation>Der Platz '%1' enthält %2 Einträge, erwartet %3; sie unterscheiden sich zuerst bei Eintrag %4.</translation>
    </message>
    <message>
        <source>capturing %1 %2/%3</source>
        <translation>Aufnahme %1 %2/%3</translation>
    </message>
    <message>
        <source>Captured %1 frame %2 was refused by the series.</source>
        <translation>Aufgenommenes %1 Bild %2 wurde von der Serie abgelehnt.</translation>
    </message>
    <message>
        <source>Capture of the %1 series: %2</source>
        <translation>Aufnahme der Serie %1: %2</translation>
    </message>
    <message>
        <source>capturing</source>
        <translation>Aufnahme</translation>
    </message>
</context>
<context>
    <name>BatchRun</name>
    <message>
        <source>No camera has the ID or serial number '%1'.</source>
        <translation>Keine Kamera hat die ID oder Seriennummer '%1'.</translation>
    </message>
    <message>
        <source>No camera model matches '%1'.</source>
        <translation>Kein Kameramodell passt zu '%1'.</translation>
    </message>
    <message>
        <source>No compatible camera was found.</source>
        <translation>Keine kompatible Kamera gefunden.</translation>
    </message>
    <message>
        <source>full access</source>
        <translation>voller Zugriff</translation>
    </message>
    <message>
        <source>busy</source>
        <translation>belegt</translation>
    </message>
    <message>
        <source>compatible</source>
        <translation>kompatibel</translation>
    </message>
    <message>
        <source>not compatible</source>
        <translation>nicht kompatibel</translation>
    </message>
    <message numerus="yes">
        <source>%n camera(s) found.</source>
        <translation>
            <numerusform>%n Kamera gefunden.</numerusform>
            <numerusform>%n Kameras gefunden.</numerusform>
        </translation>
    </message>
    <message>
        <source>The camera is busy: another application holds it (no full access).</source>
        <translation>Die Kamera ist belegt: eine andere Anwendung hält sie (kein voller Zugriff).</translation>
    </message>
    <message>
        <source>The camera cannot be opened (busy or gone).</source>
        <translation>Die Kamera kann nicht geöffnet werden (belegt oder fort).</translation>
    </message>
    <message>
        <source>The report cannot be written to '%1'.</source>
        <translation>Der Bericht kann nicht nach '%1' geschrieben werden.</translation>
    </message>
    <message>
        <source>%1 of %2 cameras succeeded.</source>
        <translation>%1 von %2 Kameras erfolgreich.</translation>
    </message>
    <message>
        <source>The camera SDK did not start: %1</source>
        <translation>Das Kamera-SDK startete nicht: %1</translation>
    </message>
</context>
<context>
    <name>CameraDiscoveryWidget</name>
    <message>
        <source>Compatible only</source>
        <translation>Nur kompatible</translation>
    </message>
    <message>
        <source>Show compatible cameras only</source>
        <translation>Nur kompatible Kameras anzeigen</translation>
    </message>
    <message>
        <source>Auto refresh</source>
        <translation>Automatisch aktualisieren</translation>
    </message>
    <message>
        <source>Enable or disable the automatic refresh of the list of cameras</source>
        <translation>Automatische Aktualisierung der Kameraliste ein- oder ausschalten</translation>
    </message>
    <message>
        <source>%1 (error: %2)</source>
        <translation>%1 (Fehler: %2)</translation>
    </message>
    <message>
        <source>Failed to start the camera SDK</source>
        <translation>Das Kamera-SDK konnte nicht gestartet werden</translation>
    </message>
    <message>
        <source>Failed to %1 the automatic refresh of cameras</source>
        <translation>Die automatische Aktualisierung der Kameras konnte nicht %1 werden</translation>
    </message>
    <message>
        <source>enable</source>
        <translation>eingeschaltet</translation>
    </message>
    <message>
        <source>disable</source>
        <translation>ausgeschaltet</translation>
    </message>
    <message>
        <source>Refresh in progress...</source>
        <translation>Aktualisierung läuft...</translation>
    </message>
    <message>
        <source>compatible </source>
        <translation>kompatiblen </translation>
    </message>
    <message>
        <source>No %1cameras found</source>
        <translation>Keine %1Kameras gefunden</translation>
    </message>
    <message>
        <source>&amp;Open Selected Camera</source>
        <translation>Ausgewählte Kamera ö&amp;ffnen</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>&amp;Aktualisieren</translation>
    </message>
    <message>
        <source>&amp;Close Camera</source>
        <translation>Kamera &amp;schließen</translation>
    </message>
</context>
<context>
    <name>CameraMapSlots</name>
    <message>
        <source>The camera offers no defect pixel map slot.</source>
        <translation>Die Kamera bietet keinen Kartenplatz für Defektpixel.</translation>
    </message>
    <message>
        <source>The map slot '%1' is write-protected (factory map).</source>
        <translation>Der Kartenplatz '%1' ist schreibgeschützt (Werkskarte).</translation>
    </message>
    <message>
        <source>The map container could not be built.</source>
        <translation>Der Kartencontainer konnte nicht erstellt werden.</translation>
    </message>
    <message>
        <source>The transfer into '%1' failed.</source>
        <translation>Die Übertragung nach '%1' ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Only %1 of %2 bytes reached '%3'.</source>
        <translation>Nur %1 von %2 Bytes erreichten '%3'.</translation>
    </message>
    <message>
        <source>The map slot '%1' cannot be selected.</source>
        <translation>Der Kartenplatz '%1' kann nicht gewählt werden.</translation>
    </message>
    <message>
        <source>Upload failed: upload to factory map is protected!</source>
        <translation>Hochladen fehlgeschlagen: Hochladen in die Werkskarte ist gesperrt!</translation>
    </message>
    <message>
        <source>Upload failed: empty map</source>
        <translation>Hochladen fehlgeschlagen: leere Karte</translation>
    </message>
    <message>
        <source>Clear map failed (protected map)</source>
        <translation>Löschen der Karte fehlgeschlagen (geschützte Karte)</translation>
    </message>
    <message>
        <source>Writing the map registers failed.</source>
        <translation>Schreiben der Kartenregister fehlgeschlagen.</translation>
    </message>
    <message>
        <source>The camera did not take the whole map.</source>
        <translation>Die Kamera hat nicht die ganze Karte übernommen.</translation>
    </message>
    <message>
        <source>The map size of '%1' cannot be read.</source>
        <translation>Die Kartengröße von '%1' kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Reading the map registers failed.</source>
        <translation>Lesen der Kartenregister fehlgeschlagen.</translation>
    </message>
    <message>
        <source>The map slot '%1' cannot be read.</source>
        <translation>Der Kartenplatz '%1' kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The download of '%1' failed.</source>
        <translation>Das Herunterladen von '%1' ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>The map read back from '%1' is not a valid container.</source>
        <translation>Die aus '%1' zurückgelesene Karte ist kein gültiger Container.</translation>
    </message>
</context>
<context>
    <name>DefectEntryModel</name>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Bright</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Beide</translation>
    </message>
    <message>
        <source>-</source>
        <translation>-</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>Series</source>
        <translation>Serie</translation>
    </message>
    <message>
        <source>Deviation</source>
        <translation>Abweichung</translation>
    </message>
</context>
<context>
    <name>DefectViewer</name>
    <message>
        <source>Defect Viewer</source>
        <translation>Defektansicht</translation>
    </message>
    <message>
        <source>Dark mean image</source>
        <translation>Dunkles Mittelwertbild</translation>
    </message>
    <message>
        <source>Bright mean image</source>
        <translation>Helles Mittelwertbild</translation>
    </message>
    <message>
        <source>Stretch contrast</source>
        <translation>Kontrast spreizen</translation>
    </message>
    <message>
        <source>Markers</source>
        <translation>Markierungen</translation>
    </message>
    <message>
        <source>Colour by test</source>
        <translation>Farbe nach Test</translation>
    </message>
    <message>
        <source>Colour by code</source>
        <translation>Farbe nach Code</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Einpassen</translation>
    </message>
    <message>
        <source>Compare With Map File...</source>
        <translation>Mit Kartendatei vergleichen...</translation>
    </message>
    <message>
        <source>Show second map</source>
        <translation>Zweite Karte zeigen</translation>
    </message>
    <message>
        <source>No mean image yet.
Add dark or bright images in the assistant; their mean image and the defects found appear here.</source>
        <translation>Noch kein Mittelwertbild.
Fügen Sie im Assistenten dunkle oder helle Bilder hinzu; ihr Mittelwertbild und die gefundenen Defekte erscheinen hier.</translation>
    </message>
    <message>
        <source>All series</source>
        <translation>Alle Serien</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Bright</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Beide</translation>
    </message>
    <message>
        <source>Map Entries</source>
        <translation>Karteneinträge</translation>
    </message>
    <message>
        <source>Dark mean</source>
        <translation>Dunkles Mittel</translation>
    </message>
    <message>
        <source>Bright mean</source>
        <translation>Helles Mittel</translation>
    </message>
    <message>
        <source>deviation from the local average in grey levels</source>
        <translation>Abweichung vom lokalen Mittel in Graustufen</translation>
    </message>
    <message>
        <source>deviation in percent of the local average</source>
        <translation>Abweichung in Prozent des lokalen Mittels</translation>
    </message>
    <message>
        <source>No mean image.</source>
        <translation>Kein Mittelwertbild.</translation>
    </message>
    <message>
        <source>Histograms</source>
        <translation>Histogramme</translation>
    </message>
    <message>
        <source>Compare With Map File</source>
        <translation>Mit Kartendatei vergleichen</translation>
    </message>
    <message>
        <source>Map files (*.txt *.bin)</source>
        <translation>Kartendateien (*.txt *.bin)</translation>
    </message>
    <message>
        <source>Point at a pixel to read its values.</source>
        <translation>Zeigen Sie auf ein Pixel, um seine Werte zu lesen.</translation>
    </message>
    <message>
        <source>All codes</source>
        <translation>Alle Codes</translation>
    </message>
    <message>
        <source>Code %1</source>
        <translation>Code %1</translation>
    </message>
    <message>
        <source>Second map: %1 common, %2 only in the generated map, %3 only in the second map.</source>
        <translation>Zweite Karte: %1 gemeinsam, %2 nur in der erzeugten Karte, %3 nur in der zweiten Karte.</translation>
    </message>
    <message>
        <source>The map file %1 cannot be opened.</source>
        <translation>Die Kartendatei %1 kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>The map file %1 is not a valid map container.</source>
        <translation>Die Kartendatei %1 ist kein gültiger Kartencontainer.</translation>
    </message>
    <message>
        <source>The map in %1 was made for images %2 pixels wide with %3 pixels, not for the %4 x %5 pixel images shown; it is not shown.</source>
        <translation>Die Karte in %1 wurde für Bilder von %2 Pixeln Breite mit %3 Pixeln erstellt, nicht für die gezeigten Bilder von %4 x %5 Pixeln; sie wird nicht gezeigt.</translation>
    </message>
    <message>
        <source>The map file %1 cannot be read.</source>
        <translation>Die Kartendatei %1 kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Add images first: the map %1 is shown on a mean image.</source>
        <translation>Fügen Sie zuerst Bilder hinzu: die Karte %1 wird auf einem Mittelwertbild gezeigt.</translation>
    </message>
    <message>
        <source>The map %1 does not fit the %2 x %3 pixel images: it has an entry at %4, %5; it is not shown.</source>
        <translation>Die Karte %1 passt nicht zu den Bildern von %2 x %3 Pixeln: sie hat einen Eintrag bei %4, %5; sie wird nicht gezeigt.</translation>
    </message>
    <message>
        <source>Absolute threshold %1: %2 pixels are flagged.</source>
        <translation>Absolute Schwelle %1: %2 Pixel werden markiert.</translation>
    </message>
    <message>
        <source>Relative threshold %1 %: %2 pixels are flagged.</source>
        <translation>Relative Schwelle %1 %: %2 Pixel werden markiert.</translation>
    </message>
    <message>
        <source>dark test</source>
        <translation>Dunkeltest</translation>
    </message>
    <message>
        <source>bright test</source>
        <translation>Helltest</translation>
    </message>
    <message>
        <source>x %1, y %2: mean %3, local average %4, deviation %5; %6</source>
        <translation>x %1, y %2: Mittel %3, lokales Mittel %4, Abweichung %5; %6</translation>
    </message>
    <message>
        <source>not flagged</source>
        <translation>nicht markiert</translation>
    </message>
    <message>
        <source>flagged by the %1</source>
        <translation>markiert vom %1</translation>
    </message>
    <message>
        <source> and </source>
        <translation> und </translation>
    </message>
</context>
<context>
    <name>DefectViewerBinding</name>
    <message>
        <source>Defect Viewer...</source>
        <translation>Defektansicht...</translation>
    </message>
    <message>
        <source>Inspect the mean images, the defects found and the thresholds.</source>
        <translation>Mittelwertbilder, gefundene Defekte und Schwellen ansehen.</translation>
    </message>
</context>
<context>
    <name>FrameCapture</name>
    <message>
        <source>No camera is open.</source>
        <translation>Es ist keine Kamera geöffnet.</translation>
    </message>
    <message>
        <source>The camera has no image stream to capture from.</source>
        <translation>Die Kamera hat keinen Bildstrom, aus dem aufgenommen werden kann.</translation>
    </message>
    <message>
        <source>The camera's pixel format %1 cannot be captured; Mono and Bayer formats of 8, 10, 12 or 16 bits can.</source>
        <translation>Das Pixelformat %1 der Kamera kann nicht aufgenommen werden; Mono- und Bayer-Formate mit 8, 10, 12 oder 16 Bit können es.</translation>
    </message>
    <message>
        <source>The camera refused %1 = %2.</source>
        <translation>Die Kamera hat %1 = %2 abgelehnt.</translation>
    </message>
    <message>
        <source>The camera was disconnected during frame %1.</source>
        <translation>Die Kamera wurde während Bild %1 getrennt.</translation>
    </message>
    <message>
        <source>Frame %1 could not be acquired (error: %2).</source>
        <translation>Bild %1 konnte nicht aufgenommen werden (Fehler: %2).</translation>
    </message>
    <message>
        <source>Frame %1 has a pixel format that cannot be captured.</source>
        <translation>Bild %1 hat ein Pixelformat, das nicht aufgenommen werden kann.</translation>
    </message>
    <message>
        <source>Frame %1 timed out twice.</source>
        <translation>Bild %1 hat zweimal die Zeit überschritten.</translation>
    </message>
    <message numerus="yes">
        <source>%n frame(s) were kept.</source>
        <translation>
            <numerusform>%n Bild wurde behalten.</numerusform>
            <numerusform>%n Bilder wurden behalten.</numerusform>
        </translation>
    </message>
    <message>
        <source>The bright level is %1 % of full scale; light the sensor evenly to 30 to 80 %, about half of full scale.</source>
        <translation>Der Hellpegel liegt bei %1 % des Vollausschlags; beleuchten Sie den Sensor gleichmäßig auf 30 bis 80 %, etwa die Hälfte des Vollausschlags.</translation>
    </message>
    <message>
        <source>The dark level is %1 % of full scale, not near black; cover the lens.</source>
        <translation>Der Dunkelpegel liegt bei %1 % des Vollausschlags, nicht nahe Schwarz; decken Sie das Objektiv ab.</translation>
    </message>
</context>
<context>
    <name>ImageSeries</name>
    <message>
        <source>The file is empty.</source>
        <translation>Die Datei ist leer.</translation>
    </message>
    <message>
        <source>The file is truncated: its pixel data is cut short.</source>
        <translation>Die Datei ist abgeschnitten: ihre Bilddaten sind unvollständig.</translation>
    </message>
    <message>
        <source>Not a readable bitmap.</source>
        <translation>Keine lesbare Bitmap.</translation>
    </message>
    <message>
        <source>Bit depth %1 is not supported for this camera.</source>
        <translation>Die Bittiefe %1 wird für diese Kamera nicht unterstützt.</translation>
    </message>
    <message>
        <source>Size %1×%2 differs from the series' %3×%4.</source>
        <translation>Die Größe %1×%2 weicht von der Größe der Serie (%3×%4) ab.</translation>
    </message>
    <message>
        <source>Not enough memory for the series.</source>
        <translation>Nicht genug Speicher für die Serie.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Defect Pixel Correction Assistant</source>
        <translation>Assistent zur Defektpixelkorrektur</translation>
    </message>
    <message>
        <source>Unsupported camera (%1). Defect pixel map selection is unavailable.</source>
        <translation>Nicht unterstützte Kamera (%1). Die Auswahl der Defektpixelkarte ist nicht verfügbar.</translation>
    </message>
</context>
<context>
    <name>UXCDefectPixelCorrection</name>
    <message>
        <source>Generate map failed: out of memory.</source>
        <translation>Karte erzeugen fehlgeschlagen: kein Speicher mehr.</translation>
    </message>
    <message>
        <source>Defect Pixel Correction</source>
        <translation>Defektpixelkorrektur</translation>
    </message>
    <message>
        <source>Close Camera</source>
        <translation>Kamera schließen</translation>
    </message>
    <message>
        <source>Dark Image Input Parameters</source>
        <translation>Eingabeparameter der Dunkelbilder</translation>
    </message>
    <message>
        <source> Image Paths:</source>
        <translation> Bildpfade:</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Resulting Mean Image:</source>
        <translation>Resultierendes Mittelwertbild:</translation>
    </message>
    <message>
        <source>Absolute Threshold:</source>
        <translation>Absoluter Schwellwert:</translation>
    </message>
    <message>
        <source>000</source>
        <translation>000</translation>
    </message>
    <message>
        <source>16</source>
        <translation>16</translation>
    </message>
    <message>
        <source>Bright Image Input Parameters</source>
        <translation>Eingabeparameter der Hellbilder</translation>
    </message>
    <message>
        <source>Relative Threshold In %:</source>
        <translation>Relativer Schwellwert in %:</translation>
    </message>
    <message>
        <source>12</source>
        <translation>12</translation>
    </message>
    <message>
        <source>Generate Map</source>
        <translation>Karte erzeugen</translation>
    </message>
    <message>
        <source>Defect Pixel Count:</source>
        <translation>Anzahl Defektpixel:</translation>
    </message>
    <message>
        <source>Defect Pixel Map Selector:</source>
        <translation>Auswahl der Defektpixelkarte:</translation>
    </message>
    <message>
        <source>Upload Generated Map To Camera</source>
        <translation>Erzeugte Karte in die Kamera laden</translation>
    </message>
    <message>
        <source>Save Generated Map To File </source>
        <translation>Erzeugte Karte in Datei speichern </translation>
    </message>
    <message>
        <source>Upload Local Map To Camera</source>
        <translation>Lokale Karte in die Kamera laden</translation>
    </message>
    <message>
        <source>Download Map To File</source>
        <translation>Karte aus der Kamera in Datei laden</translation>
    </message>
    <message>
        <source>Firmware: </source>
        <translation>Firmware: </translation>
    </message>
    <message>
        <source>Generate map from the resulting dark%1 mean images.</source>
        <translation>Karte aus den resultierenden dunklen%1 Mittelwertbildern erzeugen.</translation>
    </message>
    <message>
        <source> and bright</source>
        <translation> und hellen</translation>
    </message>
    <message>
        <source>Load Image</source>
        <translation>Bild laden</translation>
    </message>
    <message>
        <source>%1 failed!</source>
        <translation>%1 fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Loading image '%1' failed.</source>
        <translation>Laden des Bildes '%1' fehlgeschlagen.</translation>
    </message>
    <message>
        <source>%1: image format not supported!</source>
        <translation>%1: Bildformat nicht unterstützt!</translation>
    </message>
    <message>
        <source>Loading '%1': Image format not supported.</source>
        <translation>Laden von '%1': Bildformat nicht unterstützt.</translation>
    </message>
    <message>
        <source>%1: incompatible image!</source>
        <translation>%1: inkompatibles Bild!</translation>
    </message>
    <message>
        <source>Loading '%1': incompatible image.</source>
        <translation>Laden von '%1': inkompatibles Bild.</translation>
    </message>
    <message>
        <source>Out of memory!</source>
        <translation>Nicht genügend Speicher!</translation>
    </message>
    <message>
        <source>Loading '%1': out of memory.</source>
        <translation>Laden von '%1': nicht genügend Speicher.</translation>
    </message>
    <message>
        <source>Image paths</source>
        <translation>Bildpfade</translation>
    </message>
    <message>
        <source>Bitmap (*.bmp)</source>
        <translation>Bitmap (*.bmp)</translation>
    </message>
    <message>
        <source>Loading images...</source>
        <translation>Bilder werden geladen...</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Map successfully generated.</source>
        <translation>Karte erfolgreich erzeugt.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 of the %2 chosen images were not added.</source>
        <translation>%1 der %2 gewählten Bilder wurden nicht hinzugefügt.</translation>
    </message>
    <message numerus="yes">
        <source>%n bright image(s) added.</source>
        <translation>
            <numerusform>%n helles Bild hinzugefügt.</numerusform>
            <numerusform>%n helle Bilder hinzugefügt.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n dark image(s) added.</source>
        <translation>
            <numerusform>%n dunkles Bild hinzugefügt.</numerusform>
            <numerusform>%n dunkle Bilder hinzugefügt.</numerusform>
        </translation>
    </message>
    <message>
        <source>No image added.</source>
        <translation>Kein Bild hinzugefügt.</translation>
    </message>
    <message numerus="yes">
        <source>%n image(s) removed.</source>
        <translation>
            <numerusform>%n Bild entfernt.</numerusform>
            <numerusform>%n Bilder entfernt.</numerusform>
        </translation>
    </message>
    <message>
        <source>Generate map failed: missing image parameters.</source>
        <translation>Karte erzeugen fehlgeschlagen: Bildparameter fehlen.</translation>
    </message>
</context>
<context>
    <name>UXCFileTaskRunner</name>
    <message>
        <source>Uploading Map...</source>
        <translation>Karte wird hochgeladen...</translation>
    </message>
    <message>
        <source>Uploading.....</source>
        <translation>Hochladen.....</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>File Access</source>
        <translation>Dateizugriff</translation>
    </message>
    <message>
        <source>%1 cancelled; the slot %2 keeps its previous map.</source>
        <translation>%1 abgebrochen; der Slot %2 behält seine bisherige Karte.</translation>
    </message>
    <message>
        <source>%1 cancelled; the incomplete file was removed.</source>
        <translation>%1 abgebrochen; die unvollständige Datei wurde entfernt.</translation>
    </message>
    <message>
        <source>%1 done.</source>
        <translation>%1 erledigt.</translation>
    </message>
    <message>
        <source>%1 task has been successfully done.</source>
        <translation>%1: Vorgang erfolgreich abgeschlossen.</translation>
    </message>
    <message>
        <source>%1 failed.</source>
        <translation>%1 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>%1 Error occurs during File Access.</source>
        <translation>%1: Fehler beim Dateizugriff.</translation>
    </message>
</context>
<context>
    <name>UXCFrameCaptureControl</name>
    <message>
        <source>Capture...</source>
        <translation>Aufnehmen...</translation>
    </message>
    <message>
        <source>No camera is open.</source>
        <translation>Es ist keine Kamera geöffnet.</translation>
    </message>
    <message>
        <source>Take the series from the camera.</source>
        <translation>Die Serie mit der Kamera aufnehmen.</translation>
    </message>
    <message>
        <source>Capture Bright Images</source>
        <translation>Helle Bilder aufnehmen</translation>
    </message>
    <message>
        <source>Capture Dark Images</source>
        <translation>Dunkle Bilder aufnehmen</translation>
    </message>
    <message>
        <source>Light the sensor evenly, at about half of full scale.</source>
        <translation>Beleuchten Sie den Sensor gleichmäßig, auf etwa die Hälfte des Vollausschlags.</translation>
    </message>
    <message>
        <source>Cover the lens, so that no light reaches the sensor.</source>
        <translation>Decken Sie das Objektiv ab, sodass kein Licht auf den Sensor fällt.</translation>
    </message>
    <message>
        <source>Frames:</source>
        <translation>Bilder:</translation>
    </message>
    <message>
        <source>Exposure time:</source>
        <translation>Belichtungszeit:</translation>
    </message>
    <message>
        <source>Gain:</source>
        <translation>Verstärkung:</translation>
    </message>
    <message>
        <source>Check Level</source>
        <translation>Pegel prüfen</translation>
    </message>
    <message>
        <source>Mean %1, spread %2.</source>
        <translation>Mittelwert %1, Streuung %2.</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>Aufnahme</translation>
    </message>
    <message>
        <source>Capturing frames...</source>
        <translation>Bilder werden aufgenommen...</translation>
    </message>
</context>
<context>
    <name>UXCMapFiles</name>
    <message>
        <source>Text (*%1)</source>
        <translation>Text (*%1)</translation>
    </message>
    <message>
        <source>Bin (*%1)</source>
        <translation>Binär (*%1)</translation>
    </message>
    <message>
        <source>Export Map</source>
        <translation>Karte exportieren</translation>
    </message>
    <message>
        <source>Save Map</source>
        <translation>Karte speichern</translation>
    </message>
    <message>
        <source>Save to file failed!</source>
        <translation>Speichern in Datei fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Saving the map failed.</source>
        <translation>Speichern der Karte fehlgeschlagen.</translation>
    </message>
    <message numerus="yes">
        <source>Map of %n entry(s) saved to %1.</source>
        <translation>
            <numerusform>Karte mit %n Eintrag in %1 gespeichert.</numerusform>
            <numerusform>Karte mit %n Einträgen in %1 gespeichert.</numerusform>
        </translation>
    </message>
    <message>
        <source>Import Map</source>
        <translation>Karte importieren</translation>
    </message>
    <message>
        <source>Text (*.txt)</source>
        <translation>Text (*.txt)</translation>
    </message>
</context>
<context>
    <name>UXCMapGeneration</name>
    <message>
        <source>Generate Map</source>
        <translation>Karte erzeugen</translation>
    </message>
    <message>
        <source>Generate map failed: out of memory!</source>
        <translation>Karte erzeugen fehlgeschlagen: kein Speicher mehr!</translation>
    </message>
    <message>
        <source>Generate map failed: missing image parameters</source>
        <translation>Karte erzeugen fehlgeschlagen: Bildparameter fehlen</translation>
    </message>
    <message>
        <source>Generate color map failed: missing image parameters!</source>
        <translation>Farbkarte erzeugen fehlgeschlagen: Bildparameter fehlen!</translation>
    </message>
    <message>
        <source>Generate map failed: missing image parameters!</source>
        <translation>Karte erzeugen fehlgeschlagen: Bildparameter fehlen!</translation>
    </message>
    <message>
        <source>The resulting number of defect pixels: %1; the maximum allowed is: %2.</source>
        <translation>Resultierende Anzahl Defektpixel: %1; höchstens erlaubt sind: %2.</translation>
    </message>
    <message>
        <source>Generate map: The resulting number of defect pixels: %1; the maximum allowed is: %2.</source>
        <translation>Karte erzeugen: Resultierende Anzahl Defektpixel: %1; höchstens erlaubt sind: %2.</translation>
    </message>
</context>
<context>
    <name>UXCMapSlotActions</name>
    <message>
        <source> succeeded</source>
        <translation> erfolgreich</translation>
    </message>
    <message>
        <source> failed</source>
        <translation> fehlgeschlagen</translation>
    </message>
    <message>
        <source>Upload Map</source>
        <translation>Karte hochladen</translation>
    </message>
    <message>
        <source>Stop streaming before uploading map to camera.</source>
        <translation>Beenden Sie den Bildeinzug, bevor Sie eine Karte in die Kamera laden.</translation>
    </message>
    <message>
        <source>Upload Defect Pixel Map</source>
        <translation>Defektpixelkarte hochladen</translation>
    </message>
    <message>
        <source>Upload failed: empty map</source>
        <translation>Hochladen fehlgeschlagen: leere Karte</translation>
    </message>
    <message>
        <source>Upload failed: empty map!</source>
        <translation>Hochladen fehlgeschlagen: leere Karte!</translation>
    </message>
    <message>
        <source>Upload Map %1.</source>
        <translation>Karte hochladen %1.</translation>
    </message>
    <message>
        <source>The uploaded map would overwrite the selected map '%1'.
Start upload?</source>
        <translation>Die hochgeladene Karte würde die ausgewählte Karte '%1' überschreiben.
Hochladen starten?</translation>
    </message>
    <message numerus="yes">
        <source>Uploaded %n entry(s) to %1.</source>
        <translation>
            <numerusform>%n Eintrag nach %1 hochgeladen.</numerusform>
            <numerusform>%n Einträge nach %1 hochgeladen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Upload to %1 failed.</source>
        <translation>Hochladen nach %1 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Upload Generated Map</source>
        <translation>Erzeugte Karte hochladen</translation>
    </message>
    <message>
        <source>Upload Generated Map '%1'%2: %3 bytes written.</source>
        <translation>Erzeugte Karte '%1' hochladen%2: %3 Bytes geschrieben.</translation>
    </message>
    <message>
        <source>Upload Local Map</source>
        <translation>Lokale Karte hochladen</translation>
    </message>
    <message>
        <source>Upload Local Map %1.</source>
        <translation>Lokale Karte hochladen %1.</translation>
    </message>
    <message>
        <source>The uploaded map would overwrite the selected map '%1'.
Do you want to proceed?</source>
        <translation>Die hochgeladene Karte würde die ausgewählte Karte '%1' überschreiben.
Möchten Sie fortfahren?</translation>
    </message>
    <message>
        <source>Upload Map: loading local map failed!</source>
        <translation>Karte hochladen: Laden der lokalen Karte fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Loading %1 failed.</source>
        <translation>Laden von %1 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Bin (*.bin)</source>
        <translation>Binär (*.bin)</translation>
    </message>
    <message>
        <source>Upload Local File</source>
        <translation>Lokale Datei hochladen</translation>
    </message>
    <message>
        <source>Upload Local File '%1'%2: %3 bytes written.</source>
        <translation>Lokale Datei '%1' hochladen%2: %3 Bytes geschrieben.</translation>
    </message>
    <message>
        <source>Download device file %1.</source>
        <translation>Gerätedatei herunterladen %1.</translation>
    </message>
    <message numerus="yes">
        <source>Downloaded %n entry(s) from %1 to %2.</source>
        <translation>
            <numerusform>%n Eintrag von %1 nach %2 heruntergeladen.</numerusform>
            <numerusform>%n Einträge von %1 nach %2 heruntergeladen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Download from %1 failed.</source>
        <translation>Herunterladen von %1 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Download File As</source>
        <translation>Datei herunterladen als</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>Download device file %1: %2 bytes written.</source>
        <translation>Gerätedatei %1 herunterladen: %2 Bytes geschrieben.</translation>
    </message>
</context>
<context>
    <name>UXCMapStatus</name>
    <message>
        <source>%1 (factory map)</source>
        <translation>%1 (Werkskarte)</translation>
    </message>
    <message>
        <source>Out of date: the inputs changed since the map was generated. Generate the map again.</source>
        <translation>Veraltet: Die Eingaben haben sich seit dem Erzeugen der Karte geändert. Erzeugen Sie die Karte neu.</translation>
    </message>
    <message>
        <source>Map out of date: generate it again.</source>
        <translation>Karte veraltet: bitte neu erzeugen.</translation>
    </message>
    <message>
        <source>Upload Defect Pixel Map</source>
        <translation>Defektpixelkarte hochladen</translation>
    </message>
    <message>
        <source>The map was generated before the images or thresholds changed and is out of date.
Upload it anyway?</source>
        <translation>Die Karte wurde erzeugt, bevor sich Bilder oder Schwellwerte geändert haben, und ist veraltet.
Trotzdem hochladen?</translation>
    </message>
    <message numerus="yes">
        <source>Map generated: %n defect pixel(s).</source>
        <translation>
            <numerusform>Karte erzeugt: %n defektes Pixel.</numerusform>
            <numerusform>Karte erzeugt: %n defekte Pixel.</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 pixels flagged; only %2 fit into the camera's map. Raise the thresholds to flag fewer pixels.</source>
        <translation>%1 Pixel markiert; nur %2 passen in die Karte der Kamera. Erhöhen Sie die Schwellwerte, um weniger Pixel zu markieren.</translation>
    </message>
    <message>
        <source>DefPixMap0 is the factory map: it is read-only, maps cannot be uploaded to it.</source>
        <translation>DefPixMap0 ist die Werkskarte: Sie ist schreibgeschützt, es können keine Karten dorthin hochgeladen werden.</translation>
    </message>
    <message>
        <source>Upload failed: upload to factory map is protected!</source>
        <translation>Hochladen fehlgeschlagen: Hochladen in die Werkskarte ist gesperrt!</translation>
    </message>
    <message>
        <source>Upload Defect Pixel Map: upload to factory map is protected!</source>
        <translation>Defektpixelkarte hochladen: Hochladen in die Werkskarte ist gesperrt!</translation>
    </message>
    <message>
        <source>Upload refused: DefPixMap0 is the read-only factory map.</source>
        <translation>Hochladen abgelehnt: DefPixMap0 ist die schreibgeschützte Werkskarte.</translation>
    </message>
</context>
<context>
    <name>UXCMapTransfers</name>
    <message>
        <source>The camera reports an implausible maximal map size: %1.</source>
        <translation>Die Kamera meldet eine unplausible maximale Kartengröße: %1.</translation>
    </message>
    <message>
        <source>Upload Map: setting DefectPixelCorrection_MapSelect to '%1' failed!</source>
        <translation>Karte hochladen: Setzen von DefectPixelCorrection_MapSelect auf '%1' fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Upload Defect Pixel Map</source>
        <translation>Defektpixelkarte hochladen</translation>
    </message>
    <message>
        <source>Download Map From Camera</source>
        <translation>Karte aus der Kamera laden</translation>
    </message>
    <message>
        <source>Download Map</source>
        <translation>Karte herunterladen</translation>
    </message>
    <message>
        <source>Download failed: map not initialized</source>
        <translation>Herunterladen fehlgeschlagen: Karte nicht initialisiert</translation>
    </message>
    <message>
        <source>Download Map: map not initialized!</source>
        <translation>Karte herunterladen: Karte nicht initialisiert!</translation>
    </message>
    <message>
        <source>Upload failed: factory map is protected!</source>
        <translation>Hochladen fehlgeschlagen: Werkskarte ist geschützt!</translation>
    </message>
    <message>
        <source>Upload failed: factory map is protected</source>
        <translation>Hochladen fehlgeschlagen: Werkskarte ist geschützt</translation>
    </message>
    <message>
        <source>Clear map failed</source>
        <translation>Löschen der Karte fehlgeschlagen</translation>
    </message>
    <message>
        <source>Upload failed: Clear map failed</source>
        <translation>Hochladen fehlgeschlagen: Löschen der Karte fehlgeschlagen</translation>
    </message>
    <message>
        <source>Get maximal map size failed</source>
        <translation>Lesen der maximalen Kartengröße fehlgeschlagen</translation>
    </message>
    <message>
        <source>Upload failed: Get maximal map size failed!</source>
        <translation>Hochladen fehlgeschlagen: Lesen der maximalen Kartengröße fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Upload failed: maximum number of defect pixels exceeded!</source>
        <translation>Hochladen fehlgeschlagen: Höchstzahl an Defektpixeln überschritten!</translation>
    </message>
    <message>
        <source>Get selected map failed!</source>
        <translation>Lesen der ausgewählten Karte fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Upload Defect Pixel Map: Get selected map failed!</source>
        <translation>Defektpixelkarte hochladen: Lesen der ausgewählten Karte fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Upload failed: upload to factory map is protected!</source>
        <translation>Hochladen fehlgeschlagen: Hochladen in die Werkskarte ist gesperrt!</translation>
    </message>
    <message>
        <source>Upload Defect Pixel Map: upload to factory map is protected!</source>
        <translation>Defektpixelkarte hochladen: Hochladen in die Werkskarte ist gesperrt!</translation>
    </message>
    <message>
        <source>Upload failed: empty map</source>
        <translation>Hochladen fehlgeschlagen: leere Karte</translation>
    </message>
    <message>
        <source>Upload Defect Pixel Map: empty map!</source>
        <translation>Defektpixelkarte hochladen: leere Karte!</translation>
    </message>
    <message>
        <source>Clear map failed (protected map)</source>
        <translation>Löschen der Karte fehlgeschlagen (geschützte Karte)</translation>
    </message>
    <message>
        <source>Upload Defect Pixel Map: Clear map failed (protected map)!</source>
        <translation>Defektpixelkarte hochladen: Löschen der Karte fehlgeschlagen (geschützte Karte)!</translation>
    </message>
    <message>
        <source>Upload failed</source>
        <translation>Hochladen fehlgeschlagen</translation>
    </message>
    <message>
        <source>Upload Defect Pixel Map: Upload failed!</source>
        <translation>Defektpixelkarte hochladen: Hochladen fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Get map size failed</source>
        <translation>Lesen der Kartengröße fehlgeschlagen</translation>
    </message>
    <message>
        <source>Download failed: Get map size failed!</source>
        <translation>Herunterladen fehlgeschlagen: Lesen der Kartengröße fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Download failed: invalid map size!</source>
        <translation>Herunterladen fehlgeschlagen: ungültige Kartengröße!</translation>
    </message>
    <message>
        <source>Get selected map failed</source>
        <translation>Lesen der ausgewählten Karte fehlgeschlagen</translation>
    </message>
    <message>
        <source>Download Map: Get selected map failed!</source>
        <translation>Karte herunterladen: Lesen der ausgewählten Karte fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Download Map: Get map size failed!</source>
        <translation>Karte herunterladen: Lesen der Kartengröße fehlgeschlagen!</translation>
    </message>
</context>
<context>
    <name>UXCPanelKeyboard</name>
    <message>
        <source>Cl&amp;ose Camera</source>
        <translation>Kamera schl&amp;ießen</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>&amp;Generate Map</source>
        <translation>Karte &amp;erzeugen</translation>
    </message>
    <message>
        <source>&amp;Upload Generated Map To Camera</source>
        <translation>Erzeugte Karte zur &amp;Kamera hochladen</translation>
    </message>
    <message>
        <source>&amp;Save Generated Map To File </source>
        <translation>Erzeugte Karte in Datei &amp;speichern </translation>
    </message>
    <message>
        <source>Upload &amp;Local Map To Camera</source>
        <translation>Lokale Karte zur Kamera hochla&amp;den</translation>
    </message>
    <message>
        <source>Do&amp;wnload Map To File</source>
        <translation>Karte in Datei her&amp;unterladen</translation>
    </message>
</context>
<context>
    <name>UXCPanelMessages</name>
    <message>
        <source>Upload Local Map</source>
        <translation>Lokale Karte hochladen</translation>
    </message>
    <message>
        <source>%1 is not a readable map file.</source>
        <translation>%1 ist keine lesbare Kartendatei.</translation>
    </message>
    <message numerus="yes">
        <source>%1: %n entry(s) lie outside the sensor (%2 x %3).</source>
        <translation>
            <numerusform>%1: %n Eintrag liegt außerhalb des Sensors (%2 x %3).</numerusform>
            <numerusform>%1: %n Einträge liegen außerhalb des Sensors (%2 x %3).</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 holds no valid map entry.</source>
        <translation>%1 enthält keinen gültigen Karteneintrag.</translation>
    </message>
    <message>
        <source>The map of '%1' was left unchanged.</source>
        <translation>Die Karte von '%1' blieb unverändert.</translation>
    </message>
    <message>
        <source>Upload Local Map refused: %1</source>
        <translation>Hochladen der lokalen Karte abgelehnt: %1</translation>
    </message>
    <message>
        <source>Upload to %1 refused: %2</source>
        <translation>Hochladen nach %1 abgelehnt: %2</translation>
    </message>
    <message numerus="yes">
        <source>%n line(s) skipped as malformed</source>
        <translation>
            <numerusform>%n fehlerhafte Zeile übersprungen</numerusform>
            <numerusform>%n fehlerhafte Zeilen übersprungen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n duplicate coordinate(s)</source>
        <translation>
            <numerusform>%n doppelte Koordinate</numerusform>
            <numerusform>%n doppelte Koordinaten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n entry(s) beyond the camera's maximum dropped</source>
        <translation>
            <numerusform>%n Eintrag über dem Maximum der Kamera verworfen</numerusform>
            <numerusform>%n Einträge über dem Maximum der Kamera verworfen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n entry(s) will be written to '%1'</source>
        <translation>
            <numerusform>%n Eintrag wird nach '%1' geschrieben</numerusform>
            <numerusform>%n Einträge werden nach '%1' geschrieben</numerusform>
        </translation>
    </message>
    <message>
        <source>Write them?</source>
        <translation>Schreiben?</translation>
    </message>
</context>
<context>
    <name>UXCSeriesCapture</name>
    <message>
        <source>Captured %1 bright image(s).</source>
        <translation>%1 helle(s) Bild(er) aufgenommen.</translation>
    </message>
    <message>
        <source>Captured %1 dark image(s).</source>
        <translation>%1 dunkle(s) Bild(er) aufgenommen.</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>Aufnahme</translation>
    </message>
    <message>
        <source>Capture of bright images: %1</source>
        <translation>Aufnahme heller Bilder: %1</translation>
    </message>
    <message>
        <source>Capture of dark images: %1</source>
        <translation>Aufnahme dunkler Bilder: %1</translation>
    </message>
</context>
</TS>