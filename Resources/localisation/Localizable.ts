<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>improve</source>
        <translation>Improve</translation>
    </message>
    <message>
        <source>tone-changer</source>
        <translation>Tone changer</translation>
    </message>
    <message>
        <source>reply</source>
        <translation>Reply</translation>
    </message>
    <message>
        <source>translate</source>
        <translation>Translate</translation>
    </message>
    <message>
        <source>more</source>
        <translation>More</translation>
    </message>
    <message>
        <source>quick-improve</source>
        <translation>Quick improve</translation>
    </message>
    <message>
        <source>check-grammar</source>
        <translation>Check grammar</translation>
    </message>
    <message>
        <source>elevate</source>
        <translation>Elevate</translation>
    </message>
    <message>
        <source>expand</source>
        <translation>Expand</translation>
    </message>
    <message>
        <source>clear</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>concise</source>
        <translation>Concise</translation>
    </message>
    <message>
        <source>emojify</source>
        <translation>Emojify</translation>
    </message>
    <message>
        <source>friendly</source>
        <translation>Friendly</translation>
    </message>
    <message>
        <source>happy</source>
        <translation>Happy</translation>
    </message>
    <message>
        <source>confident</source>
        <translation>Confident</translation>
    </message>
    <message>
        <source>romantic</source>
        <translation>Romantic</translation>
    </message>
    <message>
        <source>sarcastic</source>
        <translation>Sarcastic</translation>
    </message>
    <message>
        <source>professional</source>
        <translation>Professional</translation>
    </message>
    <message>
        <source>witty</source>
        <translation>Witty</translation>
    </message>
    <message>
        <source>flirty</source>
        <translation>Flirty</translation>
    </message>
    <message>
        <source>reply-msg-copy</source>
        <translation>Reply to message</translation>
    </message>
    <message>
        <source>english</source>
        <translation>English</translation>
    </message>
    <message>
        <source>italian</source>
        <translation>Italian</translation>
    </message>
    <message>
        <source>french</source>
        <translation>French</translation>
    </message>
    <message>
        <source>spanish</source>
        <translation>Spanish</translation>
    </message>
    <message>
        <source>catalan</source>
        <translation>Catalan</translation>
    </message>
    <message>
        <source>german</source>
        <translation>German</translation>
    </message>
    <message>
        <source>chinese</source>
        <translation>Chinese</translation>
    </message>
    <message>
        <source>japanese</source>
        <translation>Japanese</translation>
    </message>
    <message>
        <source>portuguese</source>
        <translation>Portuguese</translation>
    </message>
    <message>
        <source>russian</source>
        <translation>Russian</translation>
    </message>
    <message>
        <source>greek</source>
        <translation>Greek</translation>
    </message>
    <message>
        <source>hindi</source>
        <translation>Hindi</translation>
    </message>
    <message>
        <source>arabic</source>
        <translation>Arabic</translation>
    </message>
    <message>
        <source>ukrainian</source>
        <translation>Ukrainian</translation>
    </message>
    <message>
        <source>korean</source>
        <translation>Korean</translation>
    </message>
    <message>
        <source>polish</source>
        <translation>Polish</translation>
    </message>
    <message>
        <source>hungarian</source>
        <translation>Hungarian</translation>
    </message>
    <message>
        <source>armenian</source>
        <translation>Armenian</translation>
    </message>
    <message>
        <source>croatian</source>
        <translation>Croatian</translation>
    </message>
    <message>
        <source>thai</source>
        <translation>Thai</translation>
    </message>
    <message>
        <source>malay</source>
        <translation>Malay</translation>
    </message>
    <message>
        <source>bengali</source>
        <translation>Bengali</translation>
    </message>
    <message>
        <source>vietnamese</source>
        <translation>Vietnamese</translation>
    </message>
    <message>
        <source>settings</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>send-feedback</source>
        <translation>Send feedback</translation>
    </message>
    <message>
        <source>share</source>
        <translation>Share</translation>
    </message>
    <message>
        <source>rate</source>
        <translation>Rate</translation>
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
        <translation>Apply</translation>
    </message>
    <message>
        <source>Quillet could not write the text into the other application. It is on the clipboard, so you can paste it.</source>
        <translation>Quillet could not write the text into the other application. It is on the clipboard, so you can paste it.</translation>
    </message>
    <message>
        <source>Install Quillet</source>
        <translation>Install Quillet</translation>
    </message>
    <message>
        <source>Quillet needs to be installed in the Applications folder.</source>
        <translation>Quillet needs to be installed in the Applications folder.</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Install</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quit</translation>
    </message>
    <message>
        <source>Install Failed</source>
        <translation>Install Failed</translation>
    </message>
    <message>
        <source>Could not copy Quillet to Applications: </source>
        <translation>Could not copy Quillet to Applications: </translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Open Quillet</source>
        <translation>Open Quillet</translation>
    </message>
    <message>
        <source>Send Feedback</source>
        <translation>Send Feedback</translation>
    </message>
    <message>
        <source>Check for Updates</source>
        <translation>Check for Updates</translation>
    </message>
    <message>
        <source>No mail program could be opened. Please write to %1.</source>
        <translation>No mail program could be opened. Please write to %1.</translation>
    </message>
    <message>
        <source>Your system's package manager keeps Quillet up to date, together with your other programs.</source>
        <translation>Your system's package manager keeps Quillet up to date, together with your other programs.</translation>
    </message>
    <message>
        <source>New versions of Quillet are published at %1.</source>
        <translation>New versions of Quillet are published at %1.</translation>
    </message>
    <message>
        <source>Not configured</source>
        <translation>Not configured</translation>
    </message>
    <message>
        <source>Checking...</source>
        <translation>Checking...</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Loading...</translation>
    </message>
    <message>
        <source>All looks great!</source>
        <translation>All looks great!</translation>
    </message>
    <message>
        <source>Beta test</source>
        <translation>Beta test</translation>
    </message>
    <message>
        <source>Quillet is ready to be used
across all your favourite apps</source>
        <translation>Quillet is ready to be used
across all your favourite apps</translation>
    </message>
    <message>
        <source>Configure Quillet</source>
        <translation>Configure Quillet</translation>
    </message>
    <message>
        <source>Quillet Status</source>
        <translation>Quillet Status</translation>
    </message>
    <message>
        <source>Premium Status</source>
        <translation>Premium Status</translation>
    </message>
    <message>
        <source>You have full access to all AI features.</source>
        <translation>You have full access to all AI features.</translation>
    </message>
    <message>
        <source>Open Accessibility Settings</source>
        <translation>Open Accessibility Settings</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Done</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Next</translation>
    </message>
    <message>
        <source>A quill turning a draft into clear text</source>
        <translation>A quill turning a draft into clear text</translation>
    </message>
    <message>
        <source>Welcome to Quillet</source>
        <translation>Welcome to Quillet</translation>
    </message>
    <message>
        <source>Set up you Quillet in a few easy steps to start communicating with confidence</source>
        <translation>Set up you Quillet in a few easy steps to start communicating with confidence</translation>
    </message>
    <message>
        <source>• Open Accessibility Settings
• Toggle Quillet
• Come back here</source>
        <translation>• Open Accessibility Settings
• Toggle Quillet
• Come back here</translation>
    </message>
    <message>
        <source>First turn on the switch beside Quillet in the accessibility settings. Then use the Quillet button at the top right of any text field.</source>
        <translation>First turn on the switch beside Quillet in the accessibility settings. Then use the Quillet button at the top right of any text field.</translation>
    </message>
    <message>
        <source>Quillet is installed! Now you can try it!</source>
        <translation>Quillet is installed! Now you can try it!</translation>
    </message>
    <message>
        <source>Type something below, then try Quillet's features.</source>
        <translation>Type something below, then try Quillet's features.</translation>
    </message>
    <message>
        <source>Quillet is ready</source>
        <translation>Quillet is ready</translation>
    </message>
    <message>
        <source>Great job!</source>
        <translation>Great job!</translation>
    </message>
    <message>
        <source>Quillet is ready to go. Start communicating with confidence in all your favourite apps!</source>
        <translation>Quillet is ready to go. Start communicating with confidence in all your favourite apps!</translation>
    </message>
    <message>
        <source>Text to try Quillet on</source>
        <translation>Text to try Quillet on</translation>
    </message>
    <message>
        <source>There is no text in this input yet. Write something, then choose the command again.</source>
        <translation>There is no text in this input yet. Write something, then choose the command again.</translation>
    </message>
    <message>
        <source>Message from Quillet</source>
        <translation>Message from Quillet</translation>
    </message>
    <message>
        <source>Bring Back the Former Clipboard</source>
        <translation>Bring Back the Former Clipboard</translation>
    </message>
    <message>
        <source>Put back what was there</source>
        <translation>Put back what was there</translation>
    </message>
    <message>
        <source>Written</source>
        <translation>Written</translation>
    </message>
    <message>
        <source>Written; the program changed %1 characters</source>
        <translation>Written; the program changed %1 characters</translation>
    </message>
    <message>
        <source>Not written</source>
        <translation>Not written</translation>
    </message>
    <message>
        <source>Not written; the text is on the clipboard</source>
        <translation>Not written; the text is on the clipboard</translation>
    </message>
    <message>
        <source>What has changed</source>
        <translation>What has changed</translation>
    </message>
    <message>
        <source>Click to take this change back</source>
        <translation>Click to take this change back</translation>
    </message>
    <message>
        <source>Changes</source>
        <translation>Changes</translation>
    </message>
    <message>
        <source>Show what has changed (Ctrl+D)</source>
        <translation>Show what has changed (Ctrl+D)</translation>
    </message>
    <message>
        <source>Nothing has changed.</source>
        <translation>Nothing has changed.</translation>
    </message>
    <message>
        <source>%1 changes. Ctrl+D shows them.</source>
        <translation>%1 changes. Ctrl+D shows them.</translation>
    </message>
    <message>
        <source>Quillet Settings</source>
        <translation>Quillet Settings</translation>
    </message>
    <message>
        <source>Permission</source>
        <translation>Permission</translation>
    </message>
    <message>
        <source>Change…</source>
        <translation>Change…</translation>
    </message>
    <message>
        <source>Change the permission</source>
        <translation>Change the permission</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Shortcut</translation>
    </message>
    <message>
        <source>Opens the commands for the input that you are in, or for what is selected in it.</source>
        <translation>Opens the commands for the input that you are in, or for what is selected in it.</translation>
    </message>
    <message>
        <source>None</source>
        <translation>None</translation>
    </message>
    <message>
        <source>No shortcut</source>
        <translation>No shortcut</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Start Quillet when I log in, without a window</source>
        <translation>Start Quillet when I log in, without a window</translation>
    </message>
    <message>
        <source>Language model</source>
        <translation>Language model</translation>
    </message>
    <message>
        <source>Without one, Quillet corrects and improves texts on this machine. For the other commands, name a server that speaks the chat completions interface.</source>
        <translation>Without one, Quillet corrects and improves texts on this machine. For the other commands, name a server that speaks the chat completions interface.</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Address</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Model</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Key</translation>
    </message>
    <message>
        <source>Programs</source>
        <translation>Programs</translation>
    </message>
    <message>
        <source>Quillet stays out of these. The menu of its button, with the other mouse button, adds one.</source>
        <translation>Quillet stays out of these. The menu of its button, with the other mouse button, adds one.</translation>
    </message>
    <message>
        <source>Programs that Quillet stays out of</source>
        <translation>Programs that Quillet stays out of</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>What is recorded</source>
        <translation>What is recorded</translation>
    </message>
    <message>
        <source>That you have opened the wizard, clicked the button, run a command and which one, and applied a result. Never a text, nor the name of a program.</source>
        <translation>That you have opened the wizard, clicked the button, run a command and which one, and applied a result. Never a text, nor the name of a program.</translation>
    </message>
    <message>
        <source>Quillet may read and write the inputs of your programs.</source>
        <translation>Quillet may read and write the inputs of your programs.</translation>
    </message>
    <message>
        <source>Quillet may not see your programs.</source>
        <translation>Quillet may not see your programs.</translation>
    </message>
    <message>
        <source>These keys are not free: another program has them, or the system does not hand them out. Press others.</source>
        <translation>These keys are not free: another program has them, or the system does not hand them out. Press others.</translation>
    </message>
    <message>
        <source>It will be copied to %1.</source>
        <translation>It will be copied to %1.</translation>
    </message>
    <message>
        <source>Quillet can start when you log in, in the background, so that its button is there at once. You find this in the settings too.</source>
        <translation>Quillet can start when you log in, in the background, so that its button is there at once. You find this in the settings too.</translation>
    </message>
    <message>
        <source>Start at Login</source>
        <translation>Start at Login</translation>
    </message>
    <message>
        <source>Only the selection</source>
        <translation>Only the selection</translation>
    </message>
    <message>
        <source>Not in %1</source>
        <translation>Not in %1</translation>
    </message>
    <message>
        <source>The keyboard went to another input meanwhile: some of the text may have gone there.</source>
        <translation>The keyboard went to another input meanwhile: some of the text may have gone there.</translation>
    </message>
    <message>
        <source>Look at your text: a part of it may have changed.</source>
        <translation>Look at your text: a part of it may have changed.</translation>
    </message>
    <message>
        <source>Quillet could not write into the other application.</source>
        <translation>Quillet could not write into the other application.</translation>
    </message>
    <message>
        <source>Works in some programs</source>
        <translation>Works in some programs</translation>
    </message>
    <message>
        <source>The writing service could not be asked, or said nothing</source>
        <translation>The writing service could not be asked, or said nothing</translation>
    </message>
    <message>
        <source>%1. Your text is unchanged. Press "reload" to try again.</source>
        <translation>%1. Your text is unchanged. Press "reload" to try again.</translation>
    </message>
    <message>
        <source>Written by %1</source>
        <translation>Written by %1</translation>
    </message>
    <message>
        <source>%1 still shows Quillet only its window, because it was started before its switch was turned on, or not from the menu. Quit it and start it from the menu.</source>
        <translation>%1 still shows Quillet only its window, because it was started before its switch was turned on, or not from the menu. Quit it and start it from the menu.</translation>
    </message>
    <message>
        <source>%1 shows Quillet only its window. A switch in its menu entry lets Quillet see the texts that you write in it.</source>
        <translation>%1 shows Quillet only its window. A switch in its menu entry lets Quillet see the texts that you write in it.</translation>
    </message>
    <message>
        <source>Turn on for %1</source>
        <translation>Turn on for %1</translation>
    </message>
    <message>
        <source>%1 shows its texts from its next start on. The settings take this back.</source>
        <translation>%1 shows its texts from its next start on. The settings take this back.</translation>
    </message>
    <message>
        <source>Start again when I quit it</source>
        <translation>Start again when I quit it</translation>
    </message>
    <message>
        <source>%1 was not started again. Start it from the menu.</source>
        <translation>%1 was not started again. Start it from the menu.</translation>
    </message>
    <message>
        <source>These show their texts because Quillet has turned on a switch in their menu entry.</source>
        <translation>These show their texts because Quillet has turned on a switch in their menu entry.</translation>
    </message>
    <message>
        <source>Programs whose switch is on</source>
        <translation>Programs whose switch is on</translation>
    </message>
    <message>
        <source>Turn off</source>
        <translation>Turn off</translation>
    </message>
    <message>
        <source>Quillet keeps running in the background. Its icon in the tray opens this window again, and ends Quillet.</source>
        <translation>Quillet keeps running in the background. Its icon in the tray opens this window again, and ends Quillet.</translation>
    </message>
    <message>
        <source>Quillet keeps running in the background. Start Quillet again to open this window.</source>
        <translation>Quillet keeps running in the background. Start Quillet again to open this window.</translation>
    </message>
    <message>
        <source>Session</source>
        <translation>Session</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unknown</translation>
    </message>
    <message>
        <source>type %1</source>
        <translation>type %1</translation>
    </message>
    <message>
        <source>type %1, desktop %2</source>
        <translation>type %1, desktop %2</translation>
    </message>
    <message>
        <source>; no X11 display answers</source>
        <translation>; no X11 display answers</translation>
    </message>
    <message>
        <source>Start Quillet in a graphical session. On a Wayland desktop, install its X11 server (the package xwayland).</source>
        <translation>Start Quillet in a graphical session. On a Wayland desktop, install its X11 server (the package xwayland).</translation>
    </message>
    <message>
        <source>; Quillet works in programs that run on its X11 server</source>
        <translation>; Quillet works in programs that run on its X11 server</translation>
    </message>
    <message>
        <source>Choose an X11 session when you log in to use Quillet everywhere.</source>
        <translation>Choose an X11 session when you log in to use Quillet everywhere.</translation>
    </message>
    <message>
        <source>Window manager</source>
        <translation>Window manager</translation>
    </message>
    <message>
        <source>the compositor of the session</source>
        <translation>the compositor of the session</translation>
    </message>
    <message>
        <source>none</source>
        <translation>none</translation>
    </message>
    <message>
        <source>Start a window manager: without one, windows are not told apart.</source>
        <translation>Start a window manager: without one, windows are not told apart.</translation>
    </message>
    <message>
        <source>%1 does not follow %2</source>
        <translation>%1 does not follow %2</translation>
    </message>
    <message>
        <source>Tray</source>
        <translation>Tray</translation>
    </message>
    <message>
        <source>present</source>
        <translation>present</translation>
    </message>
    <message>
        <source>Start Quillet a second time to bring back its window.</source>
        <translation>Start Quillet a second time to bring back its window.</translation>
    </message>
    <message>
        <source>Accessibility service</source>
        <translation>Accessibility service</translation>
    </message>
    <message>
        <source>there is no session bus</source>
        <translation>there is no session bus</translation>
    </message>
    <message>
        <source>Start Quillet in a desktop session, or with dbus-run-session.</source>
        <translation>Start Quillet in a desktop session, or with dbus-run-session.</translation>
    </message>
    <message>
        <source>it is not installed or does not answer</source>
        <translation>it is not installed or does not answer</translation>
    </message>
    <message>
        <source>Install the package at-spi2-core and log in again.</source>
        <translation>Install the package at-spi2-core and log in again.</translation>
    </message>
    <message>
        <source>it is switched off</source>
        <translation>it is switched off</translation>
    </message>
    <message>
        <source>Start Quillet: it switches the service on.</source>
        <translation>Start Quillet: it switches the service on.</translation>
    </message>
    <message>
        <source>it answers and is switched on</source>
        <translation>it answers and is switched on</translation>
    </message>
    <message>
        <source>given</source>
        <translation>given</translation>
    </message>
    <message>
        <source>not given</source>
        <translation>not given</translation>
    </message>
    <message>
        <source>Run "quillet --setup" and follow the wizard.</source>
        <translation>Run "quillet --setup" and follow the wizard.</translation>
    </message>
    <message>
        <source>%1 shows only its windows</source>
        <translation>%1 shows only its windows</translation>
    </message>
    <message>
        <source>%1 shows nothing</source>
        <translation>%1 shows nothing</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Program</translation>
    </message>
    <message>
        <source>Start the program again while Quillet has its permission.</source>
        <translation>Start the program again while Quillet has its permission.</translation>
    </message>
    <message>
        <source>these show their text: %1</source>
        <translation>these show their text: %1</translation>
    </message>
    <message>
        <source>Typing</source>
        <translation>Typing</translation>
    </message>
    <message>
        <source>every character can be typed</source>
        <translation>every character can be typed</translation>
    </message>
    <message>
        <source>the display lacks %1</source>
        <translation>the display lacks %1</translation>
    </message>
    <message>
        <source>there is no display</source>
        <translation>there is no display</translation>
    </message>
    <message>
        <source>Without it Quillet cannot write into browsers and programs built on them.</source>
        <translation>Without it Quillet cannot write into browsers and programs built on them.</translation>
    </message>
    <message>
        <source>Free keys for characters that the layout does not have: %1</source>
        <translation>Free keys for characters that the layout does not have: %1</translation>
    </message>
    <message>
        <source>Choose fewer keyboard layouts at a time.</source>
        <translation>Choose fewer keyboard layouts at a time.</translation>
    </message>
    <message>
        <source>Writing backend</source>
        <translation>Writing backend</translation>
    </message>
    <message>
        <source>Install Quillet again: quillet-backend belongs beside it.</source>
        <translation>Install Quillet again: quillet-backend belongs beside it.</translation>
    </message>
    <message>
        <source>Quillet cannot do its job here yet.</source>
        <translation>Quillet cannot do its job here yet.</translation>
    </message>
    <message>
        <source>Quillet can do its job here.</source>
        <translation>Quillet can do its job here.</translation>
    </message>
    <message>
        <source>Use the language model on this computer?</source>
        <translation>Use the language model on this computer?</translation>
    </message>
    <message>
        <source>The server at %1, run by the user "%2", offers the model "%3". With it Quillet can do more. The texts that you use a command on are then sent to this server; without it they stay with Quillet.</source>
        <translation>The server at %1, run by the user "%2", offers the model "%3". With it Quillet can do more. The texts that you use a command on are then sent to this server; without it they stay with Quillet.</translation>
    </message>
    <message>
        <source>Your answer is kept. You can change it in the settings.</source>
        <translation>Your answer is kept. You can change it in the settings.</translation>
    </message>
    <message>
        <source>Use it</source>
        <translation>Use it</translation>
    </message>
    <message>
        <source>Stay offline</source>
        <translation>Stay offline</translation>
    </message>
    <message>
        <source>Ask later</source>
        <translation>Ask later</translation>
    </message>
    <message>
        <source>Your answer could not be stored.</source>
        <translation>Your answer could not be stored.</translation>
    </message>
    <message>
        <source>The menu entry of this program cannot be read.</source>
        <translation>The menu entry of this program cannot be read.</translation>
    </message>
    <message>
        <source>The menu entry could not be written: %1.</source>
        <translation>The menu entry could not be written: %1.</translation>
    </message>
    <message>
        <source>The menu entry could not be removed: %1.</source>
        <translation>The menu entry could not be removed: %1.</translation>
    </message>
    <message>
        <source>This application shows Quillet only its window: quit it and start it with the option --force-renderer-accessibility.</source>
        <translation>This application shows Quillet only its window: quit it and start it with the option --force-renderer-accessibility.</translation>
    </message>
    <message>
        <source>Accessibility</source>
        <translation>Accessibility</translation>
    </message>
    <message>
        <source>Applications in this list may see which text field you are working in, and read and replace the text in it. Passwords are never read.</source>
        <translation>Applications in this list may see which text field you are working in, and read and replace the text in it. Passwords are never read.</translation>
    </message>
    <message>
        <source>The accessibility service of this desktop is not running, so this permission has no effect. Install the package at-spi2-core and log in again.</source>
        <translation>The accessibility service of this desktop is not running, so this permission has no effect. Install the package at-spi2-core and log in again.</translation>
    </message>
    <message>
        <source>Off. Quillet does not see other applications.</source>
        <translation>Off. Quillet does not see other applications.</translation>
    </message>
    <message>
        <source>On. Connecting to the accessibility service…</source>
        <translation>On. Connecting to the accessibility service…</translation>
    </message>
    <message>
        <source>On, but accessibility is switched off for this desktop. Switch this off and on again.</source>
        <translation>On, but accessibility is switched off for this desktop. Switch this off and on again.</translation>
    </message>
    <message>
        <source>On. Applications that were started before may have to be started again.</source>
        <translation>On. Applications that were started before may have to be started again.</translation>
    </message>
    <message>
        <source>In this Wayland session Quillet only works in programs that run on X11: choose an X11 session when you log in, and it works in all of them.</source>
        <translation>In this Wayland session Quillet only works in programs that run on X11: choose an X11 session when you log in, and it works in all of them.</translation>
    </message>
    <message>
        <source>This Wayland session does not tell Quillet where the windows of other programs are: choose an X11 session when you log in, and it works in all of them.</source>
        <translation>This Wayland session does not tell Quillet where the windows of other programs are: choose an X11 session when you log in, and it works in all of them.</translation>
    </message>
    <message>
        <source>The compositor no longer tells Quillet where windows are: start Quillet again, and if that does not help, log out and in.</source>
        <translation>The compositor no longer tells Quillet where windows are: start Quillet again, and if that does not help, log out and in.</translation>
    </message>
    <message>
        <source>Does Quillet work here?</source>
        <translation>Does Quillet work here?</translation>
    </message>
    <message>
        <source>Copy for a Bug Report</source>
        <translation>Copy for a Bug Report</translation>
    </message>
    <message>
        <source>Examine</source>
        <translation>Examine</translation>
    </message>
    <message>
        <source>Looks at this desktop and its programs</source>
        <translation>Looks at this desktop and its programs</translation>
    </message>
    <message>
        <source>Looking…</source>
        <translation>Looking…</translation>
    </message>
    <message>
        <source>The examination failed.</source>
        <translation>The examination failed.</translation>
    </message>
    <message>
        <source>Use %1, found on this computer</source>
        <translation>Use %1, found on this computer</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Result</translation>
    </message>
    <message>
        <source>Icon of Quillet</source>
        <translation>Icon of Quillet</translation>
    </message>
    <message>
        <source>Try It</source>
        <translation>Try It</translation>
    </message>
    <message>
        <source>Writing…</source>
        <translation>Writing…</translation>
    </message>
    <message>
        <source>It did not work: %1</source>
        <translation>It did not work: %1</translation>
    </message>
    <message>
        <source>Written without a model, in %1 s: %2</source>
        <translation>Written without a model, in %1 s: %2</translation>
    </message>
    <message>
        <source>Written by %1, in %2 s: %3</source>
        <translation>Written by %1, in %2 s: %3</translation>
    </message>
    <message>
        <source>mine</source>
        <translation>Mine</translation>
    </message>
    <message>
        <source>For once, such as: make it rhyme</source>
        <translation>For once, such as: make it rhyme</translation>
    </message>
    <message>
        <source>Instruction for once</source>
        <translation>Instruction for once</translation>
    </message>
    <message>
        <source>Your own commands</source>
        <translation>Your own commands</translation>
    </message>
    <message>
        <source>They are under "mine" in the popup, and need a language model. You can copy or edit their file: %1</source>
        <translation>They are under "mine" in the popup, and need a language model. You can copy or edit their file: %1</translation>
    </message>
    <message>
        <source>Remove the command</source>
        <translation>Remove the command</translation>
    </message>
    <message>
        <source>New</source>
        <translation>New</translation>
    </message>
    <message>
        <source>New command</source>
        <translation>New command</translation>
    </message>
    <message>
        <source>Try the command</source>
        <translation>Try the command</translation>
    </message>
    <message>
        <source>What is to be done with the text</source>
        <translation>What is to be done with the text</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Keys</translation>
    </message>
    <message>
        <source>The one above</source>
        <translation>The one above</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Instruction</source>
        <translation>Instruction</translation>
    </message>
    <message>
        <source>The file cannot be written: %1</source>
        <translation>The file cannot be written: %1</translation>
    </message>
    <message>
        <source>A command needs a name and an instruction.</source>
        <translation>A command needs a name and an instruction.</translation>
    </message>
    <message>
        <source>The request timed out</source>
        <translation>The request timed out</translation>
    </message>
    <message>
        <source>The writing backend cannot be reached</source>
        <translation>The writing backend cannot be reached</translation>
    </message>
    <message>
        <source>The connection to the writing backend broke off</source>
        <translation>The connection to the writing backend broke off</translation>
    </message>
    <message>
        <source>A secure connection to the writing backend could not be made</source>
        <translation>A secure connection to the writing backend could not be made</translation>
    </message>
    <message>
        <source>The writing backend has moved to another address</source>
        <translation>The writing backend has moved to another address</translation>
    </message>
    <message>
        <source>The answer is larger than 32 MB</source>
        <translation>The answer is larger than 32 MB</translation>
    </message>
    <message>
        <source>The local writing backend did not start in time.</source>
        <translation>The local writing backend did not start in time.</translation>
    </message>
    <message>
        <source>The local writing backend could not be started.</source>
        <translation>The local writing backend could not be started.</translation>
    </message>
    <message>
        <source>The local writing backend ended unexpectedly.</source>
        <translation>The local writing backend ended unexpectedly.</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
</context>
</TS>
