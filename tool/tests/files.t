  $ mkdir -p run/data shared other; cd run
  $ echo a > data/a.csv; echo b > ../shared/a.csv; echo c > ../other/a.csv; ln -s a.csv data/link.csv
  $ cat > r.zon <<F
  > // The run
  > [SYSTEM] ResultRootFolder = |..\\res\\| EndSect
  > [A] // of today
  >   default (k) = 1, |data\\a.csv|
  >   k = |data/a.csv|, |..\\shared\\a.csv| {b}, |$(dirname "$PWD")/other/a.csv|  // three files
  >   k = |data/link.csv|, |gone.csv|, |../gone/a.csv|, |data|, ||, |r.zon|, |/dev/null|, #2000-01-01#
  >   [B] k = '<CLOB:Integer:3,Filename:"data\\a.csv",Boolean:true,Filename:"x\\a.csv",String:"s">', '<CLOB:Filename>' EndSect
  > EndSect
  > F
  $ hide() { sed "s|$(dirname "$PWD")|ABOVE|g"; }

Every file name, also in packed lists and default lines:

  $ zon files r.zon | hide
  r.zon:2:29\tSYSTEM/ResultRootFolder[1]\tmissing\tABOVE/res/ (esc)
  r.zon:4:20\tA/default (k)[2]\tfile\tABOVE/run/data/a.csv (esc)
  r.zon:5:7\tA/k:1[1]\tfile\tABOVE/run/data/a.csv (esc)
  r.zon:5:21\tA/k:1[2]\tfile\tABOVE/shared/a.csv (esc)
  r.zon:5:44\tA/k:1[3]\tfile\tABOVE/other/a.csv (esc)
  r.zon:6:7\tA/k:2[1]\tfile\tABOVE/run/data/link.csv (esc)
  r.zon:6:24\tA/k:2[2]\tmissing\tABOVE/run/gone.csv (esc)
  r.zon:6:36\tA/k:2[3]\tmissing\tABOVE/gone/a.csv (esc)
  r.zon:6:53\tA/k:2[4]\tfolder\tABOVE/run/data (esc)
  r.zon:6:61\tA/k:2[5]\tnone\t (esc)
  r.zon:6:65\tA/k:2[6]\tfile\tABOVE/run/r.zon (esc)
  r.zon:6:74\tA/k:2[7]\tfile\t/dev/null (esc)
  r.zon:7:11\tA/B/k[1]\tfile\tABOVE/run/data/a.csv (esc)
  r.zon:7:11\tA/B/k[1]\tmissing\tABOVE/run/x/a.csv (esc)
  $ zon files --missing --json - < r.zon | hide
  [
    {"file": "stdin", "line": 6, "column": 24, "path": "A/k:2[2]", "name": "gone.csv", "resolved": "ABOVE/run/gone.csv", "state": "missing"},
    {"file": "stdin", "line": 6, "column": 36, "path": "A/k:2[3]", "name": "../gone/a.csv", "resolved": "ABOVE/gone/a.csv", "state": "missing"},
    {"file": "stdin", "line": 7, "column": 11, "path": "A/B/k[1]", "name": "x\\a.csv", "resolved": "ABOVE/run/x/a.csv", "state": "missing"}
  ]
  $ zon files --missing r.zon > /dev/null
  [1]
  $ printf '[A] k = |r.zon| EndSect' > sound.zon; zon files --missing sound.zon nowhere.zon "$EXAMPLES/harbour-faulty.zon" 2>&1 | grep -v '^ ' | sed "s|$EXAMPLES|E|"
  zon: nowhere.zon: No such file or directory
  E/harbour-faulty.zon:9:24: error: the file name that begins here has no closing bar in its line
  E/harbour-faulty.zon:10: note: the loader stops here: Missing |
  hint: end the file name with |
  $ zon files nowhere.zon 2>/dev/null
  [2]

Copies refer to each other; what is not copied is reported:

  $ zon files --copy-to ../new/dir r.zon 2>&1 | grep -v '^ '
  r.zon:6:24: error: `gone.csv` does not exist
  r.zon:6:36: error: `../gone/a.csv` does not exist
  r.zon:6:53: error: `data` is a folder, which is not copied
  r.zon:7:11: error: `x\a.csv` does not exist
  $ cd ../new/dir; diff ../../run/r.zon r.zon | grep '^>' | sed "s|^>|new:|; s|$(dirname "$(dirname "$PWD")")|TMP|g"
  new:   k = |data/a.csv|, |a.csv| {b}, |a-2.csv|  // three files
  new:   k = |data/a.csv|, |gone.csv|, |a-3.csv|, |TMP/run/data|, ||, |r.zon|, |/dev/null|, #2000-01-01#
  $ find . -type f | sort; cat data/a.csv a.csv a-2.csv
  ./a-2.csv
  ./a.csv
  ./data/a.csv
  ./r.zon
  a
  b
  c

Nothing that exists is changed; what is the same already stays:

  $ cd ../../run; rm ../new/dir/a-2.csv; zon files --copy-to ../new/dir r.zon 2>/dev/null; cat ../new/dir/a-2.csv
  c
  $ rm ../new/dir/a-2.csv; echo x > ../new/dir/a.csv; zon files --copy-to ../new/dir r.zon 2>&1 | grep 'another content'; ls ../new/dir
  zon: ../new/dir/a.csv: exists and has another content; nothing is copied
  a.csv
  data
  r.zon
  $ cp r.zon before.zon; zon files --copy-to . r.zon 2>/dev/null
  [2]
  $ ln -s nowhere ../new/sound.zon; zon files --copy-to ../new sound.zon
  zon: ../new/sound.zon: exists and has another content; nothing is copied
  [2]
  $ zon files --copy-to r.zon/new sound.zon
  zon: r.zon/new/: Not a directory
  [2]
  $ zon files --copy-to ../none - < sound.zon
  zon: stdin: has no folder; name a file
  [2]
  $ cmp r.zon before.zon; ls ..
  new
  other
  run
  shared

Files of different folders with the same names; a parameter file that another one refers to is copied as such:

  $ cp data/a.csv a.csv; printf '[A] k = |../run/sound.zon|, |a.csv| EndSect' > ../shared/sound.zon
  $ printf '[A] k = |a.csv|, |../shared/sound.zon| EndSect' > sound.zon
  $ zon files --copy-to ../new/two sound.zon ../shared/sound.zon; cd ../new/two; tail -n +1 * | cat
  ==> a-2.csv <==
  b
  
  ==> a.csv <==
  a
  
  ==> sound-2.zon <==
  [A] k = |sound.zon|, |a-2.csv| EndSect
  ==> sound.zon <==
  [A] k = |a.csv|, |sound-2.zon| EndSect (no-eol)
