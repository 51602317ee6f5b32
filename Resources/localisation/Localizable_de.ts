<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>improve</source>
        <translation>Verbessern</translation>
    </message>
    <message>
        <source>tone-changer</source>
        <translation>Ton ändern</translation>
    </message>
    <message>
        <source>reply</source>
        <translation>Antworten</translation>
    </message>
    <message>
        <source>translate</source>
        <translation>Übersetzen</translation>
    </message>
    <message>
        <source>more</source>
        <translation>Mehr</translation>
    </message>
    <message>
        <source>quick-improve</source>
        <translation>Schnell verbessern</translation>
    </message>
    <message>
        <source>check-grammar</source>
        <translation>Grammatik prüfen</translation>
    </message>
    <message>
        <source>elevate</source>
        <translation>Gehobener</translation>
    </message>
    <message>
        <source>expand</source>
        <translation>Ausführlicher</translation>
    </message>
    <message>
        <source>clear</source>
        <translation>Klarer</translation>
    </message>
    <message>
        <source>concise</source>
        <translation>Kürzer</translation>
    </message>
    <message>
        <source>emojify</source>
        <translation>Mit Emojis</translation>
    </message>
    <message>
        <source>friendly</source>
        <translation>Freundlich</translation>
    </message>
    <message>
        <source>happy</source>
        <translation>Fröhlich</translation>
    </message>
    <message>
        <source>confident</source>
        <translation>Selbstbewusst</translation>
    </message>
    <message>
        <source>romantic</source>
        <translation>Romantisch</translation>
    </message>
    <message>
        <source>sarcastic</source>
        <translation>Sarkastisch</translation>
    </message>
    <message>
        <source>professional</source>
        <translation>Sachlich</translation>
    </message>
    <message>
        <source>witty</source>
        <translation>Geistreich</translation>
    </message>
    <message>
        <source>flirty</source>
        <translation>Kokett</translation>
    </message>
    <message>
        <source>reply-msg-copy</source>
        <translation>Auf Nachricht antworten</translation>
    </message>
    <message>
        <source>english</source>
        <translation>Englisch</translation>
    </message>
    <message>
        <source>italian</source>
        <translation>Italienisch</translation>
    </message>
    <message>
        <source>french</source>
        <translation>Französisch</translation>
    </message>
    <message>
        <source>spanish</source>
        <translation>Spanisch</translation>
    </message>
    <message>
        <source>catalan</source>
        <translation>Katalanisch</translation>
    </message>
    <message>
        <source>german</source>
        <translation>Deutsch</translation>
    </message>
    <message>
        <source>chinese</source>
        <translation>Chinesisch</translation>
    </message>
    <message>
        <source>japanese</source>
        <translation>Japanisch</translation>
    </message>
    <message>
        <source>portuguese</source>
        <translation>Portugiesisch</translation>
    </message>
    <message>
        <source>russian</source>
        <translation>Russisch</translation>
    </message>
    <message>
        <source>greek</source>
        <translation>Griechisch</translation>
    </message>
    <message>
        <source>hindi</source>
        <translation>Hindi</translation>
    </message>
    <message>
        <source>arabic</source>
        <translation>Arabisch</translation>
    </message>
    <message>
        <source>ukrainian</source>
        <translation>Ukrainisch</translation>
    </message>
    <message>
        <source>korean</source>
        <translation>Koreanisch</translation>
    </message>
    <message>
        <source>polish</source>
        <translation>Polnisch</translation>
    </message>
    <message>
        <source>hungarian</source>
        <translation>Ungarisch</translation>
    </message>
    <message>
        <source>armenian</source>
        <translation>Armenisch</translation>
    </message>
    <message>
        <source>croatian</source>
        <translation>Kroatisch</translation>
    </message>
    <message>
        <source>thai</source>
        <translation>Thai</translation>
    </message>
    <message>
        <source>malay</source>
        <translation>Malaiisch</translation>
    </message>
    <message>
        <source>bengali</source>
        <translation>Bengalisch</translation>
    </message>
    <message>
        <source>vietnamese</source>
        <translation>Vietnamesisch</translation>
    </message>
    <message>
        <source>settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>send-feedback</source>
        <translation>Rückmeldung senden</translation>
    </message>
    <message>
        <source>share</source>
        <translation>Teilen</translation>
    </message>
    <message>
        <source>rate</source>
        <translation>Bewerten</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>reload</source>
        <translation>Reload</translation>
    </message>
    <message>
        <source>apply</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>Quillet could not write the text into the other application. It is on the clipboard, so you can paste it.</source>
        <translation>Quillet konnte den Text nicht in die andere Anwendung schreiben. Er ist in der Zwischenablage, Sie können ihn einfügen.</translation>
    </message>
    <message>
        <source>Install Quillet</source>
        <translation>Quillet installieren</translation>
    </message>
    <message>
        <source>Quillet needs to be installed in the Applications folder.</source>
        <translation>Quillet muss in den Programme-Ordner installiert werden.</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Installieren</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Install Failed</source>
        <translation>Installation fehlgeschlagen</translation>
    </message>
    <message>
        <source>Could not copy Quillet to Applications: </source>
        <translation>Quillet konnte nicht zu den Programmen kopiert werden: </translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Open Quillet</source>
        <translation>Quillet öffnen</translation>
    </message>
    <message>
        <source>Send Feedback</source>
        <translation>Rückmeldung senden</translation>
    </message>
    <message>
        <source>Check for Updates</source>
        <translation>Nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>No mail program could be opened. Please write to %1.</source>
        <translation>Es konnte kein E-Mail-Programm geöffnet werden. Bitte schreiben Sie an %1.</translation>
    </message>
    <message>
        <source>Your system&apos;s package manager keeps Quillet up to date, together with your other programs.</source>
        <translation>Die Paketverwaltung Ihres Systems hält Quillet zusammen mit Ihren anderen Programmen aktuell.</translation>
    </message>
    <message>
        <source>New versions of Quillet are published at %1.</source>
        <translation>Neue Versionen von Quillet erscheinen unter %1.</translation>
    </message>
    <message>
        <source>Not configured</source>
        <translation>Nicht eingerichtet</translation>
    </message>
    <message>
        <source>Checking...</source>
        <translation>Wird geprüft …</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Wird geladen …</translation>
    </message>
    <message>
        <source>All looks great!</source>
        <translation>Alles in Ordnung!</translation>
    </message>
    <message>
        <source>Beta test</source>
        <translation>Betatest</translation>
    </message>
    <message>
        <source>Quillet is ready to be used
across all your favourite apps</source>
        <translation>Quillet ist bereit, in allen
Ihren Lieblingsprogrammen</translation>
    </message>
    <message>
        <source>Configure Quillet</source>
        <translation>Quillet einrichten</translation>
    </message>
    <message>
        <source>Quillet Status</source>
        <translation>Status von Quillet</translation>
    </message>
    <message>
        <source>Premium Status</source>
        <translation>Premium-Status</translation>
    </message>
    <message>
        <source>You have full access to all AI features.</source>
        <translation>Sie können alle KI-Funktionen nutzen.</translation>
    </message>
    <message>
        <source>Open Accessibility Settings</source>
        <translation>Einstellungen der Barrierefreiheit öffnen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>A quill turning a draft into clear text</source>
        <translation>Eine Feder, die einen Entwurf in klaren Text verwandelt</translation>
    </message>
    <message>
        <source>Welcome to Quillet</source>
        <translation>Willkommen bei Quillet</translation>
    </message>
    <message>
        <source>Set up you Quillet in a few easy steps to start communicating with confidence</source>
        <translation>Richten Sie Quillet in wenigen einfachen Schritten ein und schreiben Sie mit Zuversicht</translation>
    </message>
    <message>
        <source>• Open Accessibility Settings
• Toggle Quillet
• Come back here</source>
        <translation>• Einstellungen der Barrierefreiheit öffnen
• Quillet einschalten
• Hierher zurückkommen</translation>
    </message>
    <message>
        <source>First turn on the switch beside Quillet in the accessibility settings. Then use the Quillet button at the top right of any text field.</source>
        <translation>Schalten Sie zuerst in den Einstellungen der Barrierefreiheit den Schalter neben Quillet ein. Danach ist der Knopf von Quillet rechts oben in jedem Textfeld.</translation>
    </message>
    <message>
        <source>Quillet is installed! Now you can try it!</source>
        <translation>Quillet ist eingerichtet! Probieren Sie es aus!</translation>
    </message>
    <message>
        <source>Type something below, then try Quillet&apos;s features.</source>
        <translation>Schreiben Sie unten etwas und probieren Sie die Funktionen von Quillet aus.</translation>
    </message>
    <message>
        <source>Quillet is ready</source>
        <translation>Quillet ist bereit</translation>
    </message>
    <message>
        <source>Great job!</source>
        <translation>Sehr gut!</translation>
    </message>
    <message>
        <source>Quillet is ready to go. Start communicating with confidence in all your favourite apps!</source>
        <translation>Quillet ist bereit. Schreiben Sie mit Zuversicht in allen Ihren Lieblingsprogrammen!</translation>
    </message>
    <message>
        <source>Text to try Quillet on</source>
        <translation>Text zum Ausprobieren von Quillet</translation>
    </message>
    <message>
        <source>There is no text in this input yet. Write something, then choose the command again.</source>
        <translation>In diesem Feld ist noch kein Text. Schreiben Sie etwas und wählen Sie den Befehl noch einmal.</translation>
    </message>
    <message>
        <source>Message from Quillet</source>
        <translation>Nachricht von Quillet</translation>
    </message>
    <message>
        <source>Quillet keeps running in the background. Its icon in the tray opens this window again, and ends Quillet.</source>
        <translation>Quillet läuft im Hintergrund weiter. Sein Symbol in der Leiste öffnet dieses Fenster wieder und beendet Quillet.</translation>
    </message>
    <message>
        <source>Quillet keeps running in the background. Start Quillet again to open this window.</source>
        <translation>Quillet läuft im Hintergrund weiter. Starten Sie Quillet noch einmal, um dieses Fenster zu öffnen.</translation>
    </message>
    <message>
        <source>Bring Back the Former Clipboard</source>
        <translation>Vorherige Zwischenablage zurückholen</translation>
    </message>
    <message>
        <source>Put back what was there</source>
        <translation>Vorherigen Text wiederherstellen</translation>
    </message>
    <message>
        <source>Written</source>
        <translation>Geschrieben</translation>
    </message>
    <message>
        <source>Written; the program changed %1 characters</source>
        <translation>Geschrieben; geänderte Zeichen durch das Programm: %1</translation>
    </message>
    <message>
        <source>Not written</source>
        <translation>Nicht geschrieben</translation>
    </message>
    <message>
        <source>Not written; the text is on the clipboard</source>
        <translation>Nicht geschrieben; der Text ist in der Zwischenablage</translation>
    </message>
    <message>
        <source>What has changed</source>
        <translation>Was sich geändert hat</translation>
    </message>
    <message>
        <source>Click to take this change back</source>
        <translation>Klicken, um diese Änderung zurückzunehmen</translation>
    </message>
    <message>
        <source>Changes</source>
        <translation>Änderungen</translation>
    </message>
    <message>
        <source>Show what has changed (Ctrl+D)</source>
        <translation>Zeigen, was sich geändert hat (Strg+D)</translation>
    </message>
    <message>
        <source>Nothing has changed.</source>
        <translation>Nichts hat sich geändert.</translation>
    </message>
    <message>
        <source>%1 changes. Ctrl+D shows them.</source>
        <translation>Änderungen: %1. Strg+D zeigt sie.</translation>
    </message>
    <message>
        <source>Quillet Settings</source>
        <translation>Einstellungen von Quillet</translation>
    </message>
    <message>
        <source>Permission</source>
        <translation>Berechtigung</translation>
    </message>
    <message>
        <source>Change…</source>
        <translation>Ändern …</translation>
    </message>
    <message>
        <source>Change the permission</source>
        <translation>Berechtigung ändern</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Opens the commands for the input that you are in, or for what is selected in it.</source>
        <translation>Öffnet die Befehle für das Feld, in dem Sie sind, oder für das, was darin ausgewählt ist.</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keines</translation>
    </message>
    <message>
        <source>No shortcut</source>
        <translation>Kein Tastenkürzel</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Start Quillet when I log in, without a window</source>
        <translation>Quillet beim Anmelden starten, ohne Fenster</translation>
    </message>
    <message>
        <source>Language model</source>
        <translation>Sprachmodell</translation>
    </message>
    <message>
        <source>Without one, Quillet corrects and improves texts on this machine. For the other commands, name a server that speaks the chat completions interface.</source>
        <translation>Ohne Sprachmodell korrigiert und verbessert Quillet Texte auf diesem Rechner. Für die anderen Befehle nennen Sie einen Server mit der Schnittstelle für Chat-Antworten.</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modell</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>Programs</source>
        <translation>Programme</translation>
    </message>
    <message>
        <source>Quillet stays out of these. The menu of its button, with the other mouse button, adds one.</source>
        <translation>Aus diesen hält sich Quillet heraus. Das Menü seines Knopfes, mit der anderen Maustaste, fügt eines hinzu.</translation>
    </message>
    <message>
        <source>Programs that Quillet stays out of</source>
        <translation>Programme, aus denen sich Quillet heraushält</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>What is recorded</source>
        <translation>Was aufgezeichnet wird</translation>
    </message>
    <message>
        <source>That you have opened the wizard, clicked the button, run a command and which one, and applied a result. Never a text, nor the name of a program.</source>
        <translation>Dass Sie den Assistenten geöffnet, den Knopf gedrückt, einen Befehl ausgeführt (und welchen) und ein Ergebnis übernommen haben. Nie ein Text, auch nicht der Name eines Programms.</translation>
    </message>
    <message>
        <source>Quillet may read and write the inputs of your programs.</source>
        <translation>Quillet darf die Eingabefelder Ihrer Programme lesen und schreiben.</translation>
    </message>
    <message>
        <source>Quillet may not see your programs.</source>
        <translation>Quillet darf Ihre Programme nicht sehen.</translation>
    </message>
    <message>
        <source>These keys are not free: another program has them, or the system does not hand them out. Press others.</source>
        <translation>Diese Tasten sind nicht frei: Ein anderes Programm hat sie, oder das System gibt sie nicht her. Drücken Sie andere.</translation>
    </message>
    <message>
        <source>It will be copied to %1.</source>
        <translation>Es wird nach %1 kopiert.</translation>
    </message>
    <message>
        <source>Quillet can start when you log in, in the background, so that its button is there at once. You find this in the settings too.</source>
        <translation>Quillet kann beim Anmelden im Hintergrund starten, damit sein Knopf gleich da ist. Sie finden das auch in den Einstellungen.</translation>
    </message>
    <message>
        <source>Start at Login</source>
        <translation>Beim Anmelden starten</translation>
    </message>
    <message>
        <source>Only the selection</source>
        <translation>Nur die Auswahl</translation>
    </message>
    <message>
        <source>Not in %1</source>
        <translation>Nicht in %1</translation>
    </message>
    <message>
        <source>The keyboard went to another input meanwhile: some of the text may have gone there.</source>
        <translation>Die Tastatur ging inzwischen an ein anderes Feld: Ein Teil des Textes kann dort gelandet sein.</translation>
    </message>
    <message>
        <source>Look at your text: a part of it may have changed.</source>
        <translation>Sehen Sie Ihren Text an: Ein Teil kann sich geändert haben.</translation>
    </message>
    <message>
        <source>Quillet could not write into the other application.</source>
        <translation>Quillet konnte nicht in die andere Anwendung schreiben.</translation>
    </message>
    <message>
        <source>Works in some programs</source>
        <translation>Funktioniert in einigen Programmen</translation>
    </message>
    <message>
        <source>The writing service could not be asked, or said nothing</source>
        <translation>Der Schreibdienst war nicht zu erreichen oder hat nichts geantwortet</translation>
    </message>
    <message>
        <source>%1. Your text is unchanged. Press &quot;reload&quot; to try again.</source>
        <translation>%1. Ihr Text ist unverändert. Drücken Sie „Reload“, um es noch einmal zu versuchen.</translation>
    </message>
    <message>
        <source>Written by %1</source>
        <translation>Geschrieben von %1</translation>
    </message>
    <message>
        <source>%1 still shows Quillet only its window, because it was started before its switch was turned on, or not from the menu. Quit it and start it from the menu.</source>
        <translation>%1 zeigt Quillet weiterhin nur sein Fenster, weil es vor dem Einschalten des Schalters oder nicht aus dem Menü gestartet wurde. Beenden Sie es und starten Sie es aus dem Menü.</translation>
    </message>
    <message>
        <source>%1 shows Quillet only its window. A switch in its menu entry lets Quillet see the texts that you write in it.</source>
        <translation>%1 zeigt Quillet nur sein Fenster. Ein Schalter in seinem Menüeintrag lässt Quillet die Texte sehen, die Sie darin schreiben.</translation>
    </message>
    <message>
        <source>Turn on for %1</source>
        <translation>Für %1 einschalten</translation>
    </message>
    <message>
        <source>%1 shows its texts from its next start on. The settings take this back.</source>
        <translation>%1 zeigt seine Texte ab dem nächsten Start. Die Einstellungen machen das rückgängig.</translation>
    </message>
    <message>
        <source>Start again when I quit it</source>
        <translation>Neu starten, wenn ich es beende</translation>
    </message>
    <message>
        <source>%1 was not started again. Start it from the menu.</source>
        <translation>%1 wurde nicht neu gestartet. Starten Sie es aus dem Menü.</translation>
    </message>
    <message>
        <source>These show their texts because Quillet has turned on a switch in their menu entry.</source>
        <translation>Diese zeigen ihre Texte, weil Quillet einen Schalter in ihrem Menüeintrag eingeschaltet hat.</translation>
    </message>
    <message>
        <source>Programs whose switch is on</source>
        <translation>Programme mit eingeschaltetem Schalter</translation>
    </message>
    <message>
        <source>Turn off</source>
        <translation>Ausschalten</translation>
    </message>
    <message>
        <source>Session</source>
        <translation>Sitzung</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>type %1</source>
        <translation>Art %1</translation>
    </message>
    <message>
        <source>type %1, desktop %2</source>
        <translation>Art %1, Arbeitsumgebung %2</translation>
    </message>
    <message>
        <source>; no X11 display answers</source>
        <translation>; kein X11-Bildschirm antwortet</translation>
    </message>
    <message>
        <source>Start Quillet in a graphical session. On a Wayland desktop, install its X11 server (the package xwayland).</source>
        <translation>Starten Sie Quillet in einer grafischen Sitzung. Installieren Sie unter Wayland dessen X11-Server (das Paket xwayland).</translation>
    </message>
    <message>
        <source>; Quillet works in programs that run on its X11 server</source>
        <translation>; Quillet arbeitet in Programmen, die auf ihrem X11-Server laufen</translation>
    </message>
    <message>
        <source>Choose an X11 session when you log in to use Quillet everywhere.</source>
        <translation>Wählen Sie beim Anmelden eine X11-Sitzung, um Quillet überall zu nutzen.</translation>
    </message>
    <message>
        <source>Window manager</source>
        <translation>Fensterverwaltung</translation>
    </message>
    <message>
        <source>the compositor of the session</source>
        <translation>der Compositor der Sitzung</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>Start a window manager: without one, windows are not told apart.</source>
        <translation>Starten Sie eine Fensterverwaltung: Ohne sie sind Fenster nicht zu unterscheiden.</translation>
    </message>
    <message>
        <source>%1 does not follow %2</source>
        <translation>%1 befolgt %2 nicht</translation>
    </message>
    <message>
        <source>Tray</source>
        <translation>Symbolleiste</translation>
    </message>
    <message>
        <source>present</source>
        <translation>vorhanden</translation>
    </message>
    <message>
        <source>Start Quillet a second time to bring back its window.</source>
        <translation>Starten Sie Quillet noch einmal, um sein Fenster zurückzuholen.</translation>
    </message>
    <message>
        <source>Accessibility service</source>
        <translation>Dienst der Barrierefreiheit</translation>
    </message>
    <message>
        <source>there is no session bus</source>
        <translation>es gibt keinen Sitzungsbus</translation>
    </message>
    <message>
        <source>Start Quillet in a desktop session, or with dbus-run-session.</source>
        <translation>Starten Sie Quillet in einer Arbeitsumgebung oder mit dbus-run-session.</translation>
    </message>
    <message>
        <source>it is not installed or does not answer</source>
        <translation>er ist nicht installiert oder antwortet nicht</translation>
    </message>
    <message>
        <source>Install the package at-spi2-core and log in again.</source>
        <translation>Installieren Sie das Paket at-spi2-core und melden Sie sich neu an.</translation>
    </message>
    <message>
        <source>it is switched off</source>
        <translation>er ist ausgeschaltet</translation>
    </message>
    <message>
        <source>Start Quillet: it switches the service on.</source>
        <translation>Starten Sie Quillet: Es schaltet den Dienst ein.</translation>
    </message>
    <message>
        <source>it answers and is switched on</source>
        <translation>er antwortet und ist eingeschaltet</translation>
    </message>
    <message>
        <source>given</source>
        <translation>erteilt</translation>
    </message>
    <message>
        <source>not given</source>
        <translation>nicht erteilt</translation>
    </message>
    <message>
        <source>Run &quot;quillet --setup&quot; and follow the wizard.</source>
        <translation>Führen Sie „quillet --setup“ aus und folgen Sie dem Assistenten.</translation>
    </message>
    <message>
        <source>%1 shows only its windows</source>
        <translation>%1 zeigt nur seine Fenster</translation>
    </message>
    <message>
        <source>%1 shows nothing</source>
        <translation>%1 zeigt nichts</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Programm</translation>
    </message>
    <message>
        <source>Start the program again while Quillet has its permission.</source>
        <translation>Starten Sie das Programm neu, während Quillet seine Berechtigung hat.</translation>
    </message>
    <message>
        <source>these show their text: %1</source>
        <translation>diese zeigen ihren Text: %1</translation>
    </message>
    <message>
        <source>Typing</source>
        <translation>Tippen</translation>
    </message>
    <message>
        <source>every character can be typed</source>
        <translation>jedes Zeichen kann getippt werden</translation>
    </message>
    <message>
        <source>the display lacks %1</source>
        <translation>dem Bildschirm fehlt %1</translation>
    </message>
    <message>
        <source>there is no display</source>
        <translation>es gibt keinen Bildschirm</translation>
    </message>
    <message>
        <source>Without it Quillet cannot write into browsers and programs built on them.</source>
        <translation>Ohne das kann Quillet nicht in Browser und darauf gebaute Programme schreiben.</translation>
    </message>
    <message>
        <source>Free keys for characters that the layout does not have: %1</source>
        <translation>Freie Tasten für Zeichen, die die Belegung nicht hat: %1</translation>
    </message>
    <message>
        <source>Choose fewer keyboard layouts at a time.</source>
        <translation>Wählen Sie weniger Tastaturbelegungen auf einmal.</translation>
    </message>
    <message>
        <source>Writing backend</source>
        <translation>Schreibdienst</translation>
    </message>
    <message>
        <source>Install Quillet again: quillet-backend belongs beside it.</source>
        <translation>Installieren Sie Quillet neu: quillet-backend gehört daneben.</translation>
    </message>
    <message>
        <source>Quillet cannot do its job here yet.</source>
        <translation>Quillet kann hier seine Arbeit noch nicht tun.</translation>
    </message>
    <message>
        <source>Quillet can do its job here.</source>
        <translation>Quillet kann hier seine Arbeit tun.</translation>
    </message>
    <message>
        <source>Use the language model on this computer?</source>
        <translation>Das Sprachmodell auf diesem Rechner verwenden?</translation>
    </message>
    <message>
        <source>The server at %1, run by the user "%2", offers the model "%3". With it Quillet can do more. The texts that you use a command on are then sent to this server; without it they stay with Quillet.</source>
        <translation>Der Server unter %1, den der Benutzer „%2“ betreibt, bietet das Modell „%3“ an. Damit kann Quillet mehr. Die Texte, auf die Sie einen Befehl anwenden, gehen dann an diesen Server; ohne ihn bleiben sie bei Quillet.</translation>
    </message>
    <message>
        <source>Your answer is kept. You can change it in the settings.</source>
        <translation>Ihre Antwort wird gespeichert. Sie können sie in den Einstellungen ändern.</translation>
    </message>
    <message>
        <source>Use it</source>
        <translation>Verwenden</translation>
    </message>
    <message>
        <source>Stay offline</source>
        <translation>Ohne Modell arbeiten</translation>
    </message>
    <message>
        <source>Ask later</source>
        <translation>Später fragen</translation>
    </message>
    <message>
        <source>Your answer could not be stored.</source>
        <translation>Ihre Antwort konnte nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>The menu entry of this program cannot be read.</source>
        <translation>Der Menüeintrag dieses Programms kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The menu entry could not be written: %1.</source>
        <translation>Der Menüeintrag konnte nicht geschrieben werden: %1.</translation>
    </message>
    <message>
        <source>The menu entry could not be removed: %1.</source>
        <translation>Der Menüeintrag konnte nicht entfernt werden: %1.</translation>
    </message>
    <message>
        <source>This application shows Quillet only its window: quit it and start it with the option --force-renderer-accessibility.</source>
        <translation>Diese Anwendung zeigt Quillet nur ihr Fenster: Beenden Sie sie und starten Sie sie mit der Option --force-renderer-accessibility.</translation>
    </message>
    <message>
        <source>Accessibility</source>
        <translation>Barrierefreiheit</translation>
    </message>
    <message>
        <source>Applications in this list may see which text field you are working in, and read and replace the text in it. Passwords are never read.</source>
        <translation>Anwendungen in dieser Liste dürfen sehen, in welchem Textfeld Sie arbeiten, und seinen Text lesen und ersetzen. Passwörter werden nie gelesen.</translation>
    </message>
    <message>
        <source>The accessibility service of this desktop is not running, so this permission has no effect. Install the package at-spi2-core and log in again.</source>
        <translation>Der Dienst der Barrierefreiheit läuft auf diesem Desktop nicht, daher hat diese Berechtigung keine Wirkung. Installieren Sie das Paket at-spi2-core und melden Sie sich neu an.</translation>
    </message>
    <message>
        <source>Off. Quillet does not see other applications.</source>
        <translation>Aus. Quillet sieht andere Anwendungen nicht.</translation>
    </message>
    <message>
        <source>On. Connecting to the accessibility service…</source>
        <translation>Ein. Verbindung zum Dienst der Barrierefreiheit wird hergestellt …</translation>
    </message>
    <message>
        <source>On, but accessibility is switched off for this desktop. Switch this off and on again.</source>
        <translation>Ein, aber die Barrierefreiheit ist auf diesem Desktop ausgeschaltet. Schalten Sie dies aus und wieder ein.</translation>
    </message>
    <message>
        <source>On. Applications that were started before may have to be started again.</source>
        <translation>Ein. Anwendungen, die schon liefen, müssen vielleicht neu gestartet werden.</translation>
    </message>
    <message>
        <source>In this Wayland session Quillet only works in programs that run on X11: choose an X11 session when you log in, and it works in all of them.</source>
        <translation>In dieser Wayland-Sitzung arbeitet Quillet nur in Programmen, die auf X11 laufen: Wählen Sie beim Anmelden eine X11-Sitzung, dann arbeitet es in allen.</translation>
    </message>
    <message>
        <source>This Wayland session does not tell Quillet where the windows of other programs are: choose an X11 session when you log in, and it works in all of them.</source>
        <translation>Diese Wayland-Sitzung sagt Quillet nicht, wo die Fenster anderer Programme sind: Wählen Sie beim Anmelden eine X11-Sitzung, dann arbeitet es in allen.</translation>
    </message>
    <message>
        <source>The compositor no longer tells Quillet where windows are: start Quillet again, and if that does not help, log out and in.</source>
        <translation>Der Compositor sagt Quillet nicht mehr, wo Fenster sind: Starten Sie Quillet neu; hilft das nicht, melden Sie sich ab und wieder an.</translation>
    </message>
    <message>
        <source>Does Quillet work here?</source>
        <translation>Funktioniert Quillet hier?</translation>
    </message>
    <message>
        <source>Copy for a Bug Report</source>
        <translation>Für einen Fehlerbericht kopieren</translation>
    </message>
    <message>
        <source>Examine</source>
        <translation>Untersuchen</translation>
    </message>
    <message>
        <source>Looks at this desktop and its programs</source>
        <translation>Sieht sich diesen Desktop und seine Programme an</translation>
    </message>
    <message>
        <source>Looking…</source>
        <translation>Wird untersucht …</translation>
    </message>
    <message>
        <source>The examination failed.</source>
        <translation>Die Untersuchung ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Use %1, found on this computer</source>
        <translation>%1 verwenden, auf diesem Rechner gefunden</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Icon of Quillet</source>
        <translation>Symbol von Quillet</translation>
    </message>
    <message>
        <source>Try It</source>
        <translation>Ausprobieren</translation>
    </message>
    <message>
        <source>Writing…</source>
        <translation>Wird geschrieben …</translation>
    </message>
    <message>
        <source>It did not work: %1</source>
        <translation>Es hat nicht funktioniert: %1</translation>
    </message>
    <message>
        <source>Written without a model, in %1 s: %2</source>
        <translation>Ohne Modell geschrieben, in %1 s: %2</translation>
    </message>
    <message>
        <source>Written by %1, in %2 s: %3</source>
        <translation>Geschrieben von %1, in %2 s: %3</translation>
    </message>
    <message>
        <source>mine</source>
        <translation>Eigene</translation>
    </message>
    <message>
        <source>For once, such as: make it rhyme</source>
        <translation>Für einmal, etwa: mach einen Reim daraus</translation>
    </message>
    <message>
        <source>Instruction for once</source>
        <translation>Anweisung für einmal</translation>
    </message>
    <message>
        <source>Your own commands</source>
        <translation>Eigene Befehle</translation>
    </message>
    <message>
        <source>They are under "mine" in the popup, and need a language model. You can copy or edit their file: %1</source>
        <translation>Sie stehen im Fenster der Befehle unter „Eigene“ und brauchen ein Sprachmodell. Ihre Datei können Sie kopieren und bearbeiten: %1</translation>
    </message>
    <message>
        <source>Remove the command</source>
        <translation>Befehl entfernen</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Neu</translation>
    </message>
    <message>
        <source>New command</source>
        <translation>Neuer Befehl</translation>
    </message>
    <message>
        <source>Try the command</source>
        <translation>Befehl ausprobieren</translation>
    </message>
    <message>
        <source>What is to be done with the text</source>
        <translation>Was mit dem Text geschehen soll</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>The one above</source>
        <translation>Das oben genannte</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Instruction</source>
        <translation>Anweisung</translation>
    </message>
    <message>
        <source>The file cannot be written: %1</source>
        <translation>Die Datei kann nicht geschrieben werden: %1</translation>
    </message>
    <message>
        <source>A command needs a name and an instruction.</source>
        <translation>Ein Befehl braucht einen Namen und eine Anweisung.</translation>
    </message>
    <message>
        <source>The request timed out</source>
        <translation>Die Anfrage hat zu lange gedauert</translation>
    </message>
    <message>
        <source>The writing backend cannot be reached</source>
        <translation>Der Schreibdienst ist nicht erreichbar</translation>
    </message>
    <message>
        <source>The connection to the writing backend broke off</source>
        <translation>Die Verbindung zum Schreibdienst ist abgebrochen</translation>
    </message>
    <message>
        <source>A secure connection to the writing backend could not be made</source>
        <translation>Eine sichere Verbindung zum Schreibdienst kam nicht zustande</translation>
    </message>
    <message>
        <source>The writing backend has moved to another address</source>
        <translation>Der Schreibdienst ist an eine andere Adresse umgezogen</translation>
    </message>
    <message>
        <source>The answer is larger than 32 MB</source>
        <translation>Die Antwort ist größer als 32 MB</translation>
    </message>
    <message>
        <source>The local writing backend did not start in time.</source>
        <translation>Der Schreibdienst dieses Rechners ist nicht rechtzeitig gestartet.</translation>
    </message>
    <message>
        <source>The local writing backend could not be started.</source>
        <translation>Der Schreibdienst dieses Rechners konnte nicht gestartet werden.</translation>
    </message>
    <message>
        <source>The local writing backend ended unexpectedly.</source>
        <translation>Der Schreibdienst dieses Rechners wurde unerwartet beendet.</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
</context>
</TS>
