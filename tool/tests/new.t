  $ cp "$EXAMPLES"/*.zon .
  $ cat > template.zon <<'E'
  > [Run] {required; of one day}
  >    default (Step) = 60
  >    default (Mode) = 'dry'
  >    Title {required} = 'a
  > b'
  >    Mode() {one of dry, wet} = ''
  >    Rate {> 0; < 1e2; default .5; unit m/s; of *the* [pump] a|b} = 1.0
  >    Limit {default 7} = 0.0 {>= 0; value}
  >    Name {default north; one of the quays} = ''
  >    File {default |a.csv|, 2; open} = |x|, 0
  >    Bad {default none} = 0
  >    Depths {required; open} = 0.0 {>= 0; unit m}, 0
  >    Fixed {required} = %cores, {ask}, , true
  >    [Berth()] {0 .. 1}
  >       default (Step) = 30
  >       Step = 1
  >       Step_2 {of a text that is very, very long, so long that the comment has no room in the line any more} = 0
  >       () {any} = '', 1
  >    EndSect
  > EndSect
  > [Empty] EndSect
  > E

What has a default is there, what is required is an empty place, the rest a comment:

  $ zon new -t template.zon | tee new.zon
  [Run]  // required; of one day
     Title =  // string; required
     Mode = 'dry'  // string; may occur several times; one of dry, wet; default 'dry'
     Rate = .5  // real; > 0; < 1e2; unit m/s; default .5; of *the* [pump] a|b
     Limit = 7  // real; >= 0; default 7; value
     Name = 'north'  // string; default north; one of the quays
     File = |a.csv|, 2  // file name, integer, ...; default |a.csv|, 2
     // Bad = 0  // integer; default none
     Depths = ,  // real, integer, ...; required; >= 0 (value 1); unit m (value 1)
     Fixed = %cores, {ask}, ,  // substitution, remark alone, empty place, boolean; required
     [Berth]  // may occur several times
        Step = 30  // integer; default 30
        // integer; of a text that is very, very long, so long that the comment has no room in the line any more
        // Step_2 = 0
        // NAME = '', 1  // string, integer; may occur several times; any
     EndSect  // Berth
  EndSect  // Run
  
  [Empty]
  EndSect  // Empty
  $ sed -i "s/Title =/& ''/; s/Depths = ,/Depths = 1, 2/; s/{ask}, ,/& true/" new.zon
  $ zon compare -t template.zon new.zon

Without anything required a new file conforms as it is:

  $ zon new -t harbour-template.zon > new.zon && zon compare -t harbour-template.zon new.zon

As Markdown, with one table for each section:

  $ zon doc -t template.zon
  # template.zon
  
  ## Run
  
  required; of one day
  
  | Keyword | Values | Conditions | Unit | Default | Required | Remark |
  |---|---|---|---|---|---|---|
  | Title | string | | | | yes | |
  | Mode, several times | string | one of dry, wet | | 'dry' | | |
  | Rate | real | \> 0; \< 1e2 | m/s | .5 | | of \*the\* \[pump\] a\|b |
  | Limit | real | \>= 0 | | 7 | | value |
  | Name | string | | | north | | one of the quays |
  | File | file name, integer, ... | | | \|a.csv\|, 2 | | |
  | Bad | integer | | | none | | |
  | Depths | real, integer, ... | \>= 0 (value 1) | m (value 1) | | yes | |
  | Fixed | substitution, remark alone, empty place, boolean | | | | yes | |
  
  ## Run/Berth
  
  may occur several times
  
  | Keyword | Values | Conditions | Unit | Default | Required | Remark |
  |---|---|---|---|---|---|---|
  | Step | integer | | | 30 | | |
  | Step\_2 | integer | | | | | of a text that is very, very long, so long that the comment has no room in the line any more |
  | any other | string, integer | | | | | any |
  
  ## Empty

A file in which a name repeats is no template:

  $ zon new -t harbour.zon 2>&1 | grep error
  harbour.zon:26:4: error: a template cannot have two of `Input`
  $ zon doc -t harbour.zon > /dev/null 2>&1
  [2]
  $ zon new -t nowhere.zon
  zon: nowhere.zon: No such file or directory
  [2]
  $ printf '[A] k = ? EndSect' | zon doc -t -
  stdin:1:9: error: expected a value, found `?`
  [A] k = ? EndSect
          ^
  [2]
