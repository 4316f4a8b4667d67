  $ cp "$EXAMPLES"/*.zon .

Everything has its place; texts, comments, the spelling of words and numbers, and the order stay:

  $ cat > odd.zon <<'E'
  > 
  > 
  > /* top */ [A( )]   {one}k=1,2;one
  >   longer_name   = - 3 ,'it''s  // no comment
  >   two',   |a ; b| , #2000-01-01#  /* of
  >    two lines */ // and one more
  > 
  > 
  > [ Inner ]
  >   // its own line
  >   k{r}=%  a , {u},,
  >   5 {five} // five
  >   
  >      , 6 /* in /* the */ line */ , 7
  >     /* in the list */ , tRUE
  > default(k){d}=.5e-3,  // last
  > // before the end
  > endsect EndSect /*A*/ // another
  > [B] EndSect // b
  > [C] EndSect;C
  > [D // of a header
  > ] EndSect /* of D */ [E] ( ) = true
  > k /* c */ // d
  > = l=1.m=2
  > EndSect // the E
  > /* at the
  >   end */
  > 
  > E
  $ zon fmt odd.zon | tee formatted.zon
  /* top */
  [A()] {one}
     k = 1, 2  ;one
     longer_name = - 3, 'it''s  // no comment
    two', |a ; b|, #2000-01-01#  /* of
     two lines */ // and one more
  
     [Inner]
        // its own line
        k {r} = %  a, {u}, ,
           5 {five}  // five
  
           , 6 /* in /* the */ line */, 7
           /* in the list */, tRUE
        default (k) {d} = .5e-3,  // last
     // before the end
     endsect  // Inner
  EndSect  /*A*/ // another
  [B]
  EndSect  // b
  [C]
  EndSect  // C
  [D  // of a header
     ]
  EndSect  /* of D */
  [E]
     () = true
     k  /* c */ // d
        =
     l = 1.
     m = 2
  EndSect  // the E
  /* at the
    end */
  $ zon fmt --check formatted.zon

Comments of consecutive lines begin in one column, counted in characters, unless a line is very long:

  $ cat > columns.zon <<E
  > [A] // one
  > k = 'äöü' // two
  > key = 1 // three
  > 
  > key = 1 // four
  > $(printf 'x%0130d = 1' 0) // five
  > EndSect // A
  > E
  $ zon fmt columns.zon | sed 's/0\{130\}/.../'
  [A]           // one
     k = '\xc3\xa4\xc3\xb6\xc3\xbc'  // two (esc)
     key = 1    // three
  
     key = 1  // four
     x... = 1  // five
  EndSect  // A

Line ends are as the first one, but for those in texts and comments, and the last line has one:

  $ printf '/* a\nb */[A]\r\nk=1 // c\nl=\047x\ny\047 EndSect' | zon fmt - | cat -v
  /* a
  b */^M
  [A]^M
     k = 1  // c^M
     l = 'x
  y'^M
  EndSect  // A^M
  $ printf '/* a\r\nb */[A]\nk=1 // c \r\nEndSect\r\n\r\n' | zon fmt - | cat -v
  /* a^M
  b */
  [A]
     k = 1  // c 
  EndSect  // A
  $ printf '[A] EndSect' | zon fmt -; printf ' \n\n' | zon fmt -; printf '\n;x' | zon fmt -
  [A]
  EndSect  // A
  ;x

The plain form has no comments:

  $ zon fmt --plain harbour.zon > plain.zon; zon fmt --plain --check plain.zon
  $ grep '//' plain.zon | grep -v 'EndSect  // '
     Motto = 'A fair wind; a full hold // that''s all'
  $ zon fmt --plain settings.zon
  [Run]
     Title = 'Ellersund, an ordinary Tuesday'
     Workers = 400
     Step {seconds} = 60
     Output = |results\tuesday.csv|
     [Report]
        Hours = 6, 12.5, 18
     EndSect  // Report
  
  EndSect  // Run
  

What would change, as a patch; the file itself is replaced by --write only, and only if it changes:

  $ zon fmt --check harbour-plain.zon odd.zon formatted.zon
  harbour-plain.zon
  odd.zon
  [1]
  $ printf '[A]\nk = 1\nEndSect // A' > small.zon
  $ zon fmt --diff small.zon formatted.zon
  --- small.zon
  +++ small.zon
  @@ -1,3 +1,3 @@
   [A]
  -k = 1
  -EndSect // A
  \ No newline at end of file
  +   k = 1
  +EndSect  // A
  [1]
  $ for name in odd columns harbour; do
  >   zon fmt --diff $name.zon > difference && echo "$name: no difference"
  >   cp $name.zon $name.patched; patch -s -F0 $name.patched difference; zon fmt $name.zon | cmp - $name.patched
  > done
  $ chmod 640 odd.zon; mkdir folder; ln -s ../odd.zon folder/link.zon; touch -d 2000-01-01 formatted.zon
  $ zon fmt --write folder/link.zon formatted.zon; cmp odd.zon formatted.zon
  $ stat -c '%A %N' odd.zon folder/link.zon; stat -c %y formatted.zon | cut -c 1-4; ls -A folder
  -rw-r----- 'odd.zon'
  lrwxrwxrwx 'folder/link.zon' -> '../odd.zon'
  2000
  link.zon
  $ (ulimit -f 0; trap '' XFSZ; zon fmt --write small.zon); cat small.zon; ls -A | grep '~\|fmt-'
  small.zon: error: the file cannot be written: File too large
  [A]
  k = 1
  EndSect // A (no-eol)
  [1]
  $ cp small.zon linked.zon; ln linked.zon other.zon; zon fmt --write linked.zon; head -n 2 other.zon
  [A]
     k = 1
  $ zon fmt --write - < small.zon
  zon: stdin: is not a file that can be replaced
  [2]

An error is reported and does not stop the next file:

  $ zon fmt harbour-faulty.zon nowhere.zon harbour-faulty.zon - --check < small.zon > output 2>&1
  [2]
  $ grep -v '^ ' output
  harbour-faulty.zon:9:24: error: the file name that begins here has no closing bar in its line
  harbour-faulty.zon:10: note: the loader stops here: Missing |
  hint: end the file name with |
  zon: nowhere.zon: No such file or directory
  
  harbour-faulty.zon:9:24: error: the file name that begins here has no closing bar in its line
  harbour-faulty.zon:10: note: the loader stops here: Missing |
  hint: end the file name with |
  stdin
  $ zon fmt --check --diff small.zon 2>&1 | head -n 1
  --check excludes --diff
  $ zon fmt - -
  zon: standard input can be read only once; use - for one file
  [2]

A formatted text is not formatted again, and has the same tree as before:

  $ for file in "$EXAMPLES"/../fuzz/corpus/save/*; do tail -c +25 "$file" > "save_$(basename "$file")"; done
  $ for file in *.zon save_* "$EXAMPLES"/../fuzz/corpus/load/* ${ZON_REAL_SETTINGS:+"$ZON_REAL_SETTINGS"/*}; do
  >   zon fmt "$file" > once 2> /dev/null || continue
  >   zon fmt --check once || echo "of $file"
  >   zon dump --json - < "$file" > before; zon dump --json - < once | cmp before - || echo "of $file"
  > done
