/* The tool where something goes wrong around it: signals, disks, files of others. */
#include "tests/tool.h"

namespace mtranslate {

namespace {

std::string summary(const std::string &counts) { return "mtranslate: " + counts + "\n"; }

/* Commands that start a batch of t/a.m, t/b.m and t/c.m and go on when its worker waits for the
 * pipe t/b.m; $batch and $worker are then its processes. The batch has a process group of its own,
 * as at a terminal. */
const std::string START =
    "setsid env --default-signal=HUP,INT $tool t/?.m -O o -j 1 2> e & batch=$!\n"
    "for i in $(seq 500); do [ -f o/a.txt ] && break; sleep 0.01; done; sleep 0.1\n"
    "worker=$(cat /proc/$batch/task/$batch/children)\n";

const std::string NO_WORKER =
    "for i in $(seq 500); do [ -d /proc/$((worker)) ] || break; sleep 0.01; done\n"
    "[ -d /proc/$((worker)) ] && echo there is a worker; ls -A o; ";

class Trouble : public Tool {
protected:
    Trouble() {
        write(directory / "t/a.m", "x = 1;\n");
        write(directory / "t/c.m", "x = 2;\n");
        run("mkfifo t/b.m");
    }
};

TEST_F(Trouble, of_a_worker_costs_its_file) {
    check({
        // the shell says on standard error how a process ended, or not
        {"{ " + START + "kill -KILL $worker; wait $batch; echo $?; } 2> /dev/null; ls o; cat e", 0,
         "3\na.txt\nc.txt\nt/b.m: error: its process was ended by signal 9 (Killed)\n" +
             summary("3 of 3 files: 2 without errors or gaps, 0 with gaps, 0 with errors, 1 "
                     "failed; 2 written"),
         ""},
    });
}

TEST_F(Trouble, of_an_interrupt_leaves_whole_files_and_no_worker) {
    const std::string done = summary(
        "1 of 3 files: 1 without errors or gaps, 0 with gaps, 0 with errors, 0 failed; 1 "
        "written; interrupted");
    const struct {
        const char *kill;
        const char *code;
        std::string said;
    } rows[] = {
        {"kill -TERM $batch", "143", done},
        {"kill -INT $batch", "130", done},
        {"kill -INT -$batch", "130", done},
        {"kill -HUP -$batch", "129", done},
        {"kill -TERM -$batch", "143", done},
        {"kill -KILL $batch", "137", ""},
        {"kill -STOP $worker; kill -TERM $batch", "143", done},
    };
    for (const auto &row : rows) {
        std::string command = "rm -rf o; { " + START;
        command.append(row.kill).append("; wait $batch; echo $?; } 2> /dev/null; ");
        command.append(NO_WORKER).append("cat e");
        check({{command, 0, row.code + ("\na.txt\n" + row.said), ""}});
    }
}

/* As of SIGHUP under nohup. */
TEST_F(Trouble, of_an_ignored_signal_is_none) {
    const std::string reset = "--default-signal=HUP,INT";
    std::string start = START;
    start.replace(start.find(reset), reset.size(), "--ignore-signal=HUP,INT");
    check({{"{ " + start +
                "kill -HUP $batch; kill -INT $batch; sleep 0.1; : > t/b.m; wait $batch; echo $?; } "
                "2> /dev/null; cat e",
            0,
            "0\n" + summary("3 of 3 files: 3 without errors or gaps, 0 with gaps, 0 with errors, 0 "
                            "failed; 3 written"),
            ""}});
}

TEST_F(Trouble, with_processes_costs_no_other_file) {
    for (const char *name : {"a", "b", "c"})
        write(directory / "s" / (std::string(name) + ".m"), "x = 1;\n");
    const auto counts = [](int good, int bad) {
        const std::string ended = std::to_string(good);
        return summary("3 of 3 files: " + ended + " without errors or gaps, 0 with gaps, 0 with " +
                       "errors, " + std::to_string(bad) + " failed; " + ended + " written");
    };
    const std::string untold =
        ".m: error: its process cannot be told of it: No buffer space available\n";
    check({
        {"AFTER=1 trouble fork s -O o -j 3", 0, "", counts(3, 0)},
        {"trouble fork s -O o -j 3", 3, "",
         "mtranslate: error: cannot make a worker: Resource temporarily unavailable\n"},
        {"AFTER=1 trouble send s -O p -j 1", 3, "", "s/b" + untold + "s/c" + untold + counts(1, 2)},
        {"{ TROUBLE=end ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=$shim $tool s -O q -j 2 "
         "2> e & batch=$!\n"
         "for i in $(seq 500); do ls q/.m* > /dev/null && break; sleep 0.01; done\n"
         "kill -TERM $batch; wait $batch; echo $?; } 2> /dev/null; cat e",
         0,
         "143\nmtranslate: 0 of 3 files: 0 without errors or gaps, 0 with gaps, 0 with errors, 0 "
         "failed; 0 written; interrupted\n",
         ""},
    });
}

/* What a source makes of its worker stays in it; elsewhere the tool does the same without that. */
TEST_F(Trouble, of_a_worker_reaches_nobody_else) {
    write(directory / "s/a.m", "x = 1;\n");
    const auto rights = [](const char *network, const char *programs, const char *others) {
        return std::string("network ") + network + "\nprograms " + programs + "\nothers " + others +
               "\nitself yes\nmemory of others " + others + '\n';
    };
    const std::string one =
        summary("1 of 1 file: 1 without errors or gaps, 0 with gaps, 0 with errors, 0 failed");
    const std::string difference = "--- o/a.txt\n+++ o/a.txt\n@@ -1 +1 @@\n-old\n+x := 1;\n";
    check({
        {"AT=a.m trouble rights check s", 0, "", rights("no", "no", "no") + one},
        {"AT=a.m trouble rights s/a.m --max-time 9", 0, "x := 1;\n", rights("no", "no", "no")},
        {"AT=a.m trouble rights s/a.m --untrusted", 0, "x := 1;\n", rights("no", "no", "no")},
        {"AT=a.m trouble rights s/a.m", 0, "x := 1;\n", rights("yes", "yes", "yes")},
        {"mkdir o; echo old > o/a.txt; AT=a.m trouble rights diff s -O o", 1, difference,
         rights("no", "yes", "no") + one.substr(0, one.size() - 1) +
             "; 1 would change, 0 would be new\n"},
        {"trouble prctl check s", 0, "", one},
    });
}

/* Files after one that takes long are done before it, and counted. */
TEST_F(Trouble, of_an_interrupt_hides_nothing_that_is_done) {
    for (int i = 0; i < 50; ++i)
        write(directory / ("t/" + std::to_string(100 + i) + ".m"), repeated("x = 1;\n", 3000));
    check({
        {"{ setsid env --default-signal=INT $tool t/b.m t -O o -j 3 2> e & batch=$!\n"
         "for i in $(seq 500); do [ -f o/120.txt ] && break; sleep 0.01; done\n"
         "kill -INT -$batch; wait $batch; echo $?; } 2> /dev/null\n"
         "cat o/1* | sort -u; ls -A o | grep -v '^[1ac].*txt$'\n"
         "done=$(ls o | wc -l); counted=$(sed 's/^mtranslate: //; s/ .*//' e)\n"
         // a worker may be stopped between its file and its word of it
         "[ $((done - counted)) -le 2 ] && [ $counted -le $done ] || echo $counted of $done; "
         "sed 's/.*; //' e",
         0, "130\nx := 1;\ninterrupted\n", ""},
    });
}

TEST_F(Trouble, of_a_full_disk_leaves_whole_files) {
    const std::string large = repeated("x = 1;\n", 3000);
    for (const char *name : {"a", "b", "c", "d"})
        write(directory / "s" / (std::string(name) + ".m"), large);
    write(directory / "s/e.m", "x = 1;\n");
    const auto failures = [](const std::string &folder, const char *reason) {
        std::string text;
        for (const char *name : {"a", "b", "c", "d"})
            text += std::string("s/") + name + ".m: error: cannot write '" + folder + '/' + name +
                    ".txt': " + reason + '\n';
        return text;
    };
    check({
        {"ulimit -f 1; mtranslate s -O o; echo $?; ls -A o", 0, "3\ne.txt\n",
         failures("o", "File too large") +
             summary("5 of 5 files: 1 without errors or gaps, 0 with gaps, 0 with errors, 4 "
                     "failed; 1 written")},
        {"mtranslate diff s -O o > /dev/full", 3, "",
         "mtranslate: error: cannot write standard output: No space left on device\n"},
        {"mtranslate s/e.m -O o --depfile /dev/full 2>&1 | tail -n 1", 0,
         "mtranslate: error: cannot write '/dev/full': No space left on device\n", ""},
    });
    const std::string disk = "unshare -rm sh -c 'mount -t tmpfs -o size=16k disk m && ";
    if (run("mkdir m; " + disk + "true'") != 0) GTEST_SKIP() << "no file system may be mounted";
    check({
        {disk + "'\"$tool s -O m -j 1 2> e\"'; echo $?; ls -A m; cat e'", 0,
         "3\ne.txt\n" + failures("m", "No space left on device") +
             summary("5 of 5 files: 1 without errors or gaps, 0 with gaps, 0 with errors, 4 "
                     "failed; 1 written"),
         ""},
    });
}

TEST_F(Trouble, of_an_output_folder_is_told) {
    const std::string counts = summary(
        "3 of 3 files: 1 without errors or gaps, 0 with gaps, 0 with errors, 2 failed; 1 written");
    const auto failures = [](const std::string &reason) {
        return "t/b.m: error: " + reason + "t/c.m: error: " + reason;
    };
    check({
        {"{ " + START + "rm -r o; : > t/b.m; wait $batch; echo $?; } 2> /dev/null; cat e; ls", 0,
         "3\n" + failures("cannot write into the folder 'o': No such file or directory\n") +
             counts + "e\nerr\nout\nrun\nt\n",
         ""},
        {"mkfifo p; mv p t/b.m; { " + START +
             "mv o q; mkdir o; : > t/b.m; wait $batch; echo $?; } 2> /dev/null; cat e; ls o",
         0, "3\n" + failures("the folder 'o' has been replaced\n") + counts, ""},
    });
}

/* Whether a file is there is not known then: nothing else is taken in its place. */
TEST_F(Trouble, of_looking_at_a_file_does_not_hide_it) {
    write(directory / "s/main.m", "f(1);\n");
    write(directory / "s/f.m", "function f(x)\nend\n");
    write(directory / "s/private/f.m", "function f(own)\nend\n");
    write(directory / "b/main.m", "called\n");
    write(directory / "b/called.m", "x = 1;\n");
    write(directory / "k/main.m", "f(1);\n");
    write(directory / "k/@box/f.m", "function f(box)\nend\n");
    write(directory / "c/main.m", "b = box(1);\n");
    write(directory / "c/@box/box.m", "function b = box(x)\nb = class(struct('x', x), 'box');\n");
    write(directory / "n/n.m", "function n(a)\nif nargin < 1, a = 1; end\nb = a\nend\n");
    const std::string own = "f := proc( own )\nend proc;\n\nf(1);\n";
    check({
        {"AT=/private trouble stat s/main.m", 0, own, ""},
        {"AT=private/f.m trouble stat s/main.m", 3, "",
         "mtranslate: error: unable to open s/private/f.m: Input/output error\n"},
        {"AT=mtranslate.toml trouble stat s/main.m", 3, "",
         "mtranslate: error: cannot read 's/mtranslate.toml': Input/output error\n"},
        {"AT=b/called.m trouble stat b -W no-MT401 -O o", 3, "",
         "b/called.m: error: cannot read 'b/called.m': Input/output error\n"
         "mtranslate: error: unable to open b/called.m: Input/output error\n" +
             summary(
                 "2 of 2 files: 0 without errors or gaps, 0 with gaps, 0 with errors, 2 failed; "
                 "0 written")},
        {"AT=@box trouble opendir k/main.m", 3, "",
         "mtranslate: error: unable to open k/@box: Input/output error\n"},
        {"AT=@box/box.m trouble open c/main.m", 3, "",
         "mtranslate: error: unable to open c/@box/box.m: Too many open files\n"},
        // whether nargin is the language's own
        {"AT=nargin.m trouble stat n/n.m", 3, "",
         "mtranslate: error: unable to open n/nargin.m: Input/output error\n"},
        {"AFTER=1 trouble readdir k/main.m", 3, "",
         "mtranslate: error: unable to open k: Input/output error\n"},
        {"touch s/.gitignore; AT=s/.gitignore trouble stat check s 2>&1 | sed \"s:'/.*/s/:'s/:\"",
         0,
         "s/.gitignore: error: cannot read 's/.gitignore': Input/output error\n" +
             summary(
                 "4 of 4 files: 3 without errors or gaps, 0 with gaps, 0 with errors, 1 failed"),
         ""},
        {"mkdir p; echo > p/main.txt; AT=p/main.txt trouble open diff k --exclude '@*' -W no-MT401 "
         "-O p",
         3, "",
         "k/main.m: error: cannot read 'p/main.txt': Too many open files\n" +
             summary("1 of 1 file: 0 without errors or gaps, 0 with gaps, 0 with errors, 1 failed; "
                     "0 would change, 0 would be new; 1 message left out")},
        {"AT=b/called.m trouble open b/main.m b/called.m -O o2", 3, "",
         "mtranslate: error: unable to open b/called.m: Too many open files\n"
         "b/called.m: error: cannot read 'b/called.m': Too many open files\n" +
             summary(
                 "2 of 2 files: 0 without errors or gaps, 0 with gaps, 0 with errors, 2 failed; "
                 "0 written")},
    });
}

TEST_F(Trouble, of_odd_files_stays_with_them) {
    write(directory / "s/a.m", "x = 1;\n");
    write(directory / "s/folder.m/b.m", "x = 2;\n");
    run("mkfifo s/pipe.m; ln -s /dev/zero s/device.m; ln -s nowhere s/gone.m; ln -s . s/loop; "
        "mkdir s/empty; echo text > file");
    const std::string none = "cannot make the folder 'file";
    check({
        {"mtranslate s -O o; find o -type f | sort", 0, "o/a.txt\no/folder.m/b.txt\n",
         summary("2 of 2 files: 2 without errors or gaps, 0 with gaps, 0 with errors, 0 failed; 2 "
                 "written")},
        {"mtranslate s -O file", 3, "",
         "mtranslate: error: cannot make the folder 'file': Not a directory\n"},
        {"mkdir k; ln -s /proc k/p; ln -s /proc/self/environ k/e.m; mtranslate check k "
         "/proc/self/attr",
         3, "",
         "k/e.m: error: cannot read 'k/e.m': it lies in a file system of the kernel\n"
         "k/p: error: cannot read 'k/p': it lies in a file system of the kernel\n" +
             summary("2 of 2 files: 0 without errors or gaps, 0 with gaps, 0 with errors, 2 "
                     "failed")},
        {"echo 'x = f(1);' > k/c.m; ln -s /proc/self/environ k/f.m; mtranslate k/c.m", 3, "",
         "mtranslate: error: cannot read 'k/f.m': it lies in a file system of the kernel\n"},
    });
    // who may read everything has to be somebody else
    const std::string other = "setpriv --reuid=65534 --regid=65534 --clear-groups ";
    const bool is_root = run("[ $(id -u) -eq 0 ]") == 0;
    if (is_root && run("chmod 755 .; " + other + "$tool -V") != 0)
        GTEST_SKIP() << "the tool cannot be run as a user that may not read everything";
    check({
        {"echo a > s/c.m; echo 'closed(1)' > s/d.m; mkdir s/closed s/listed p; echo > "
         "s/listed/d.m; echo > "
         "s/listed/d.txt; chmod 0 s/a.m s/closed; "
         "chmod 744 s/listed; chmod 777 p; " +
             (is_root ? other : "") +
             "$tool s -O p; echo $?; find p -type f | sort; chmod 700 s/closed s/listed",
         0, "3\np/d.txt\np/folder.m/b.txt\n",
         "s/a.m: error: cannot read 's/a.m': Permission denied\n"
         "mtranslate: error: unable to open s/a.m: Permission denied\n"
         "s/closed: error: cannot read 's/closed': Permission denied\n"
         "s/d.m: warning: 1 function is found nowhere and left to the host: closed [MT401]\n"
         "s/listed/d.m: error: cannot read 's/listed/d.m': Permission denied\n" +
             summary("6 of 6 files: 2 without errors or gaps, 0 with gaps, 0 with errors, 4 "
                     "failed; 2 written")},
    });
}

/* A tree of somebody who would like to see files of the user. */
TEST_F(Trouble, of_an_untrusted_tree_stays_in_it) {
    write(directory / "home/secret.m", "x = 'secret' $\n");
    write(directory / "s/a.m", "secret;\n");
    write(directory / "s/b.m", "called(1)\n");
    write(directory / "s/mtranslate.toml", "[functions]\ncalled.default = 'f({args})'\n");
    run("ln -s ../home/secret.m s/secret.m; ln -s ../home s/sub; ln -s . s/again; mkfifo "
        "s/called.m; "
        "mkdir alone; ln -s ../home/secret.m alone");
    const std::string unknown =
        "s/b.m: warning: 1 function is found nowhere and left to the host: called [MT401]\n";
    const auto refused = [](const std::string &path, const std::string &what) {
        return "cannot read '" + path + "': it leads out of " + what + '\n';
    };
    const std::string single = "mtranslate: error: ";
    check({
        {"mtranslate s --untrusted -O o; cat o/b.txt", 0, "called(1);\n",
         "s/a.m: error: " + refused("s/secret.m", "what is given") + unknown +
             "s/secret.m: error: " + refused("s/secret.m", "'s'") +
             "s/sub: error: " + refused("s/sub", "'s'") +
             summary("4 of 4 files: 1 without errors or gaps, 0 with gaps, 0 with errors, 3 "
                     "failed; 1 written")},
        {"mtranslate s/a.m --untrusted", 3, "", single + refused("s/secret.m", "what is given")},
        {"mtranslate s/secret.m --untrusted", 3, "",
         single + refused("s/secret.m", "what is given")},
        {"mtranslate s/a.m --untrusted -I s -I home --strict 2>&1 | tail -n 1", 0,
         "             ^\n", ""},
        {"mtranslate s/b.m --no-config", 3, "", single + "cannot read 's/called.m': a pipe\n"},
        {"mtranslate s/b.m --untrusted --language classic", 3, "",
         single + "cannot read 's/called.m': a pipe\n"},
        {"mtranslate check alone --untrusted --report r.html 2> /dev/null; grep -c 'id=\"pack-' "
         "r.html; mtranslate check alone --report r.html 2> /dev/null; grep -c 'id=\"pack-' r.html",
         0, "0\n1\n", ""},
    });
}

/* A watched tree: a changed file alone, all when a configuration changes, and a broken one. */
TEST_F(Trouble, with_a_configuration_does_not_end_a_watch) {
    write(directory / "s/a.m", "x = 1;\nif x == 'abc', end\n");
    write(directory / "s/b.m", "y = 1;\nif y == 'abc', end\n");
    write(directory / "watch", R"(
until_line() { for i in $(seq 200); do grep -q "$1" "$2" 2> /dev/null && return; sleep 0.05; done; }
$tool s -O o --watch 2> log &
until_line waiting log; : > log
echo 'x = 2;' >> s/a.m; until_line waiting log; grep -c warning log; tail -n 1 o/a.txt; : > log
echo '[names' > s/mtranslate.toml; until_line waiting log; grep -c error: log; : > log
printf '[names]
y = "z"
' > s/mtranslate.toml; until_line waiting log; grep -c warning log
kill $!; wait $!; echo $?
)");
    check({{". ./watch 2> /dev/null", 0, "1\nx := 2;\n1\n2\n143\n", ""}});
}

}  // namespace

}  // namespace mtranslate
