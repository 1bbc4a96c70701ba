// The COM server timed from a script host, as hosts use it: a lesson read
// from its text and written again, Clone and Duplicate, and a bag of a
// thousand encoded properties written and read. One line per operation, in
// the shape of Google Benchmark's console lines: name, wall time of one run
// in milliseconds, runs.
//
//   cscript //nologo com_benchmarks.js LESSON.txt [SECONDS]
//
// LESSON.txt is a lesson's text in UTF-16 (quillbank_steady_benchmarks
// --save-lesson writes one); each operation runs until it has taken SECONDS
// (default 1) and at least once.

var args = WScript.Arguments;
if (args.length < 1) {
    WScript.Echo("usage: cscript //nologo com_benchmarks.js LESSON.txt [SECONDS]");
    WScript.Quit(2);
}
var minTime = args.length > 1 ? parseFloat(args(1)) * 1000 : 1000;

var files = new ActiveXObject("Scripting.FileSystemObject");
// 1 = for reading, -1 = Unicode.
var stream = files.OpenTextFile(args(0), 1, false, -1);
var text = stream.ReadAll();
stream.Close();

function pad(value, width, left) {
    var s = String(value);
    while (s.length < width) {
        s = left ? s + " " : " " + s;
    }
    return s;
}

function run(name, body) {
    var start = new Date().getTime();
    var runs = 0;
    var elapsed = 0;
    do {
        body();
        runs++;
        elapsed = new Date().getTime() - start;
    } while (elapsed < minTime);
    WScript.Echo(pad(name, 32, true) + " " + pad((elapsed / runs).toFixed(1), 12, false) + " ms " +
                 pad(runs, 12, false));
}

var lesson = new ActiveXObject("Quillbank.Lesson");
lesson.FromXMLString(text);
var storyboards = lesson.Storyboards.Count;
var suffix = "/" + storyboards;

WScript.Echo(pad("Benchmark", 32, true) + " " + pad("Time", 15, false) + " " + pad("Iterations", 12, false));
WScript.Echo("------------------------------------------------------------------");

run("COM FromXMLString" + suffix, function () {
    var read = new ActiveXObject("Quillbank.Lesson");
    read.FromXMLString(text);
});
run("COM ToXMLString" + suffix, function () {
    lesson.ToXMLString();
});
run("COM Clone" + suffix, function () {
    lesson.Clone();
});
run("COM Duplicate" + suffix, function () {
    lesson.Duplicate();
});

// A thousand encoded string properties, half of them outside ASCII.
var etBase64Encoded = 1;
var bag = new ActiveXObject("Quillbank.PersistedPropertyCollection");
for (var i = 0; i < 1000; i++) {
    bag.SetString("p" + i, i % 2 === 0 ? "Fold the paper " + i + " times" : "Br\u00FCche \u2014 " + i,
                  etBase64Encoded);
}
var bagText = bag.ToXMLString();
run("COM EncodedPropertiesWrite/1000", function () {
    bag.ToXMLString();
});
run("COM EncodedPropertiesRead/1000", function () {
    var read = new ActiveXObject("Quillbank.PersistedPropertyCollection");
    read.FromXMLString(bagText);
});
WScript.Echo("END-OF-SUITE");
