// accept.js LIBRARY REPORT SIZE ADDRESS [/https:ADDRESS] [/bad:ADDRESS] [/ca:FILE] [/session:WORD]
// [/invoice:KEY]: registers BVConn.dll for the user, calls it, removes it, and writes what it sees to the
// end of a file. accept.cmd beside it says more, runs it, and removes what is left where a step ends the
// process. The status is the count of steps that failed.

var shell = WScript.CreateObject("WScript.Shell");
var files = WScript.CreateObject("Scripting.FileSystemObject");
var library = WScript.Arguments(0);
var reportFile = WScript.Arguments(1);
var size = WScript.Arguments(2);
var address = WScript.Arguments(3);
var options = { session: "ANNA", invoice: "INV-1001" };
for (var place = 4; place < WScript.Arguments.length; ++place) {
  var word = /^\/(\w+):(.*)$/.exec(WScript.Arguments(place));
  if (word) options[word[1]] = word[2];
}

var NOBODY = "http://127.0.0.1:9/soap";  // nothing listens there
var CANNOT_CONNECT = "0x80044301", NOT_TRUSTED = "0x80044303", NO_SUCH_NODE = "0x80044204";
var CLASSES = ["BVConnectorObject", "BVGenericConnector", "BVServices", "BVMethods",
  "BVProjectConnector", "BVQuoteConnector", "BVOrderConnector", "BVRequestForQuoteConnector",
  "BVSalesInstrumentConnector", "BVAcknowledgementConnector", "BVSubmittalConnector",
  "BVRMAConnector", "BVSearchConnector", "BVInvoiceConnector", "BVMaintenanceConnector",
  "BVPrintConnector", "BVHeartBeatConnector", "BVSummaryConnector", "BVPostalConnector",
  "BVExportConnector", "BVDocumentConnector", "BVConfigConnector", "SoapNode", "XMLDocument",
  "Support"];
var INVOICES = "{B1D1DDEA-A3A5-4FD6-AE06-630F3CBF7E97}";

// The report is closed after each piece, so that it is there whatever a step does to this process. The
// file has one byte for each letter, so that those which not every machine has are told by number.
var failures = 0;
function plain(text) {
  return String(text).replace(/[^\x20-\x7E]/g, function (letter) {
    return "\\u" + ("000" + letter.charCodeAt(0).toString(16)).slice(-4);
  });
}
function write(text) {
  var report = files.OpenTextFile(reportFile, 8, true);  // behind what is there
  report.Write(text);
  report.Close();
}
function say(text) {
  WScript.Echo(text);
  write(plain(text) + "\r\n");
}

// A step says what it saw: by itself that it passed, thrown that it failed. Its name is written before
// it begins.
function NotJudged(reason) { this.reason = reason; }
function Failed(reason) { this.reason = reason; }
function require_that(holds, reason) { if (!holds) throw new Failed(reason); }
function step(name, action) {
  var outcome = "passed", seen;
  write(name + ": ");
  try {
    seen = action();
  } catch (error) {
    if (error instanceof NotJudged) {
      outcome = "not judged";
      seen = error.reason;
    } else {
      outcome = "FAILED";
      ++failures;
      seen = error instanceof Failed ? error.reason : text_of(error);
    }
  }
  WScript.Echo(name + ": " + outcome + ", " + seen);
  write(outcome + ", " + plain(seen) + "\r\n");
}

function number_of(error) {
  var number = error.number;
  return "0x" + (number < 0 ? number + 4294967296 : number).toString(16).toUpperCase();
}
function text_of(error) { return number_of(error) + " \"" + error.message + "\""; }

function value_of(path) {
  try {
    return String(shell.RegRead(path));
  } catch (error) {
    return "";
  }
}

// Wine has a NUL at the end.
function expanded(text) { return shell.ExpandEnvironmentStrings(text).replace(/\0/g, ""); }

function run(command) {
  return shell.Run("cmd.exe /s /c \"" + command + "\"", 0, true);
}
// By the script beside this one, which keeps in mind what there is to remove. It is regsvr32's status.
function regsvr32(what, whom) {
  return run("\"" + files.GetParentFolderName(WScript.ScriptFullName) + "\\accept.cmd\" /" + what +
             " " + whom);
}

// The names of all keys of classes, interfaces and type libraries below a root.
function listing(root) {
  var file = reportFile + ".keys", all = [];
  var keys = ["", "\\CLSID", "\\Interface", "\\TypeLib"];
  for (var i = 0; i < keys.length; ++i) {
    run("reg.exe query \"" + root + "\\Software\\Classes" + keys[i] + "\" > \"" + file + "\" 2>&1");
    var stream = files.OpenTextFile(file, 1);
    while (!stream.AtEndOfStream) {
      var line = stream.ReadLine();
      if (/^HKEY_/.test(line)) all.push(line);
    }
    stream.Close();
  }
  files.DeleteFile(file);
  return all.sort();
}
function missing_from(some, all) {
  var known = {}, missing = [];
  for (var i = 0; i < all.length; ++i) known[all[i]] = true;
  for (i = 0; i < some.length; ++i) if (!known[some[i]]) missing.push(some[i]);
  return missing;
}

// A server that answers with an error of its own was reached too; these are what stands between.
function reach(url) {
  var invoices = new ActiveXObject("BVConn.BVInvoiceConnector"), invoice;
  try {
    invoice = invoices.GetInvoice(url, options.session, options.invoice);
  } catch (error) {
    if (!/^0x8004(?!43)/.test(number_of(error))) throw error;
    return "the server answers with the error " + text_of(error);
  }
  return "the server answers with " + invoice.Name + ", which has " + invoice.Nodes.Count + " nodes";
}

function expect_error(number, action) {
  try {
    action();
  } catch (error) {
    if (number_of(error) != number) throw error;
    return text_of(error);
  }
  throw new Failed("there is no error");
}

// An event calls the function whose name is its own with the prefix before it.
var beats = 0;
function heart_HeartBeatError() { ++beats; }

var wine = files.FileExists(expanded("%SystemRoot%\\System32\\winecfg.exe"));
// Only administrators may read this.
var elevated = !wine && value_of("HKEY_USERS\\S-1-5-19\\Environment\\TEMP") != "";
var system = "HKLM\\Software\\Microsoft\\Windows NT\\CurrentVersion\\";
var root = "HKEY_CURRENT_USER";

say("BVConnector on this machine, " + (size == "x64" ? "64" : "32") + " bits");
say("system: " + (wine ? "wine, as " : "") + value_of(system + "ProductName") + ", build " +
    [value_of(system + "CurrentBuild"), value_of(system + "UBR")].join(".").replace(/\.$/, "") + ", " +
    expanded("%PROCESSOR_ARCHITECTURE%"));
say("elevated: " + (elevated ? "yes" : "no"));
say("file: " + library + ", version " + files.GetFileVersion(library));
say("");

var before = { HKEY_CURRENT_USER: listing("HKEY_CURRENT_USER"),
               HKEY_LOCAL_MACHINE: listing("HKEY_LOCAL_MACHINE") };
var was_there = [];
step("the registry before", function () {
  for (var at in before) {
    for (var i = 0; i < before[at].length; ++i) {
      if (/\\BVConn(ector)?\./.test(before[at][i])) was_there.push(before[at][i]);
    }
  }
  require_that(was_there.length == 0, "the component is registered already: " + was_there[0]);
  return before.HKEY_CURRENT_USER.length + " keys of the user, " +
      before.HKEY_LOCAL_MACHINE.length + " of the machine, none of ours";
});

if (was_there.length == 0) {
  step("registering for the user", function () {
    var status = regsvr32("register", "user");
    require_that(status == 0, "regsvr32 ends with " + status);
    var key = root + "\\Software\\Classes\\CLSID\\" + INVOICES + "\\";
    require_that(value_of(key + "InprocServer32\\").toLowerCase() == library.toLowerCase(),
                 "its file is \"" + value_of(key + "InprocServer32\\") + "\"");
    require_that(value_of(key + "InprocServer32\\ThreadingModel") == "Apartment",
                 "its threading model is \"" + value_of(key + "InprocServer32\\ThreadingModel") + "\"");
    require_that(value_of(key + "ProgID\\") == "BVConn.BVInvoiceConnector",
                 "its name is \"" + value_of(key + "ProgID\\") + "\"");
    return missing_from(listing(root), before[root]).length + " keys more";
  });

  // Neither wine nor an elevated process looks at the user's own classes.
  if (wine || elevated) {
    step("registering for the machine", function () {
      root = "HKEY_LOCAL_MACHINE";
      var status = regsvr32("register", "machine");
      require_that(status == 0, "regsvr32 ends with " + status);
      return "as " + (wine ? "wine" : "an elevated process") +
          " does not look at the user's own classes";
    });
  }

  step("making an object of every class by both names", function () {
    for (var i = 0; i < CLASSES.length; ++i) {
      require_that(new ActiveXObject("BVConn." + CLASSES[i]) &&
                   new ActiveXObject("BVConnector." + CLASSES[i]), CLASSES[i]);
    }
    return CLASSES.length + " classes, version " + new ActiveXObject("BVConn.Support").Version;
  });

  step("a row of a catalogue", function () {
    var row = new ActiveXObject("BVConn.BVMethods").GetInvoice;
    require_that(row == "getInvoice", row);
    return row;
  });

  step("an error of the component's own", function () {
    return expect_error(NO_SUCH_NODE, function () {
      new ActiveXObject("BVConn.SoapNode").Nodes.Item(9);
    });
  });

  // Before any reply, since the event tells of a silence.
  step("the event of a heart beat that fails", function () {
    var heart;
    try {
      heart = WScript.CreateObject("BVConn.BVHeartBeatConnector", "heart_");
    } catch (error) {
      if (wine) throw new NotJudged("wine has no events for scripts");
      throw error;
    }
    heart.sendHeartBeat(NOBODY, options.session);
    if (wine && beats == 0) throw new NotJudged("wine has no events for scripts");
    require_that(beats == 1, "it came " + beats + " times");
    return "it came once";
  });

  step("a call over http", function () { return reach(address); });

  step("a call where nobody listens", function () {
    return expect_error(CANNOT_CONNECT, function () { reach(NOBODY); });
  });

  step("a call over https, certificate trusted", function () {
    if (!options.https) throw new NotJudged("no address was given (/https:)");
    var seen = reach(options.https);
    if (wine) throw new NotJudged("wine trusts every certificate; " + seen);
    return seen;
  });

  step("a call over https, certificate not trusted", function () {
    if (!options.bad) throw new NotJudged("no address was given (/bad:)");
    if (wine) throw new NotJudged("wine trusts every certificate");
    return expect_error(NOT_TRUSTED, function () { reach(options.bad); });
  });

  step("the same with the file of its authority", function () {
    if (!options.bad || !options.ca) throw new NotJudged("no file was given (/bad: and /ca:)");
    if (wine) throw new NotJudged("wine trusts every certificate");
    var session = new ActiveXObject("BVConn.BVConnectorObject");
    session.HTTPTransportObject.Option("tls.ca_file") = options.ca;
    return reach(options.bad);
  });

  step("removing all", function () {
    var statuses = [regsvr32("remove", "user")];
    if (root == "HKEY_LOCAL_MACHINE") statuses.push(regsvr32("remove", "machine"));
    for (var i = 0; i < statuses.length; ++i) {
      require_that(statuses[i] == 0, "regsvr32 ends with " + statuses[i]);
    }
    return "done";
  });

  step("the registry after", function () {
    var seen = [];
    for (var at in before) {
      var after = listing(at);
      var left = missing_from(after, before[at]), lost = missing_from(before[at], after);
      require_that(left.length == 0, left.length + " keys are left: " + left[0]);
      require_that(lost.length == 0, lost.length + " keys are gone: " + lost[0]);
      seen.push(after.length);
    }
    return seen.join(" and ") + " keys, as before";
  });

  step("making an object that is not registered", function () {
    var made;
    try {
      made = new ActiveXObject("BVConn.BVMethods");
    } catch (error) {
      return text_of(error);
    }
    throw new Failed("it can still be made");
  });
}

say("");
say(failures == 0 ? "Nothing failed." : failures + " steps failed.");
files.DeleteFile(reportFile + ".open");
WScript.Quit(failures);
