! Tests of the module zon: fortran_test FOLDER, a folder with a copy of examples/. With a second argument, one
! error that stops the program.
program fortran_test
  use, intrinsic :: ieee_arithmetic, only: ieee_positive_inf, ieee_quiet_nan, ieee_value
  use, intrinsic :: iso_fortran_env, only: int64, real32, real64
  use zon
  implicit none
  type :: holder
    type(zon_file) :: file
    integer :: number = 0
  end type
  character(len=*), parameter :: newline = new_line('a')
  character(len=*), parameter :: text = &
    '[Run] // settings' // newline // &
    '   Cells = 40, -3, 9223372036854775807' // newline // &
    '   Depth = 2.5, 1e39, 7, 3.4028235e38' // newline // &
    '   Title = ''North  ''' // newline // &
    '   On = true, false' // newline // &
    '   Names = ''a'', ''long'', ''''' // newline // &
    '   Holes = 1, , 3' // newline // &
    '   Empty =' // newline // &
    '   Chart = |maps\east.map|' // newline // &
    '   Date = #2031-02-14 00:00:00#' // newline // &
    'EndSect' // newline // &
    '[Quay] Length = 1 EndSect [Quay] Length = 2 [Berth] EndSect EndSect' // newline
  character(len=300) :: folder, what
  character(len=:), allocatable :: names(:)  ! not local: gfortran 12 warns of every local one
  integer :: failures = 0

  call get_command_argument(1, folder)
  call get_command_argument(2, what)
  if (what /= '') then
    call stop_by(trim(what))
  else
    call test_values()
    call test_arrays()
    call test_errors()
    call test_setting()
    call test_finding()
    call test_saving()
    call test_comparing()
    call test_variables()
    deallocate (names)
    if (failures > 0) error stop 'there were failures'
    print '(a)', 'no failures'
  end if

contains

  subroutine check(is_good, name)
    logical, intent(in) :: is_good
    character(len=*), intent(in) :: name
    if (is_good) return
    failures = failures + 1
    print '(2a)', 'FAILED: ', name
  end subroutine

  ! The status is as wanted, and the report contains a text.
  subroutine check_error(file, stat, wanted, part)
    type(zon_file), intent(in) :: file
    integer, intent(in) :: stat, wanted
    character(len=*), intent(in) :: part
    if (stat == wanted .and. index(file%errmsg(), part) > 0) return
    failures = failures + 1
    print '(a, i0, 4a)', 'FAILED: status ', stat, ' ', file%errmsg(), ', not ', part
  end subroutine

  subroutine test_values()
    type(zon_file) :: file
    integer :: cells, stat
    integer(int64) :: large
    real(real64) :: depth
    real(real32) :: single
    logical :: is_on
    character(len=:), allocatable :: title
    character(len=5) :: short
    character(len=4) :: shorter = 'same'

    call file%parse(text, 'run.zon')
    call file%get('run/cells  ', cells)
    call check(cells == 40, 'integer')
    call file%get('Run/Cells[2]', large)
    call check(large == -3, '64-bit integer')
    call file%get('Run/Depth', depth)
    call check(abs(depth - 2.5_real64) <= 0, 'real')
    call file%get('Run/Depth[3]', single)
    call check(abs(single - 7) <= 0, 'an integer as a real')
    call file%get('Run/Depth[4]', single)
    call check(abs(single - huge(single)) <= 0, 'the largest real(4)')
    call file%get('Run/On', is_on)
    call check(is_on, 'logical')
    call file%get('Run/Title', title)
    call check(title == 'North' .and. len(title) == 7, 'a string keeps its trailing blanks')
    call file%get_fixed('Run/Title', short)
    call check(short == 'North', 'a string in a variable that it fills')
    call file%get_fixed('Run/Title', shorter, stat=stat)
    call check_error(file, stat, zon_out_of_range, 'run.zon:4:12: error: the text is longer than 4 characters')
    call file%get_fixed('Run/Empty', short, 'none')
    call check(short == 'none' .and. shorter == 'same', 'a default, and no change')
    call file%get_filename('Run/Chart', title)
    call check(index(title, 'maps/east.map', back=.true.) > 1, 'file name')
    call file%get_text('Run/Date', title)
    call check(title == '#2031-02-14 00:00:00#', 'text of a date')

    call file%get('Run/Missing', cells, default=7)
    call file%get('Run/Empty', depth, 1.5_real64)
    call file%get('No/Section', title, 'none')
    call file%get('Run/Off', is_on, default=.false.)
    call check(cells == 7 .and. abs(depth - 1.5) <= 0 .and. title == 'none' .and. .not. is_on, 'defaults')
    call file%get('Run/Title', cells, default=1, stat=stat)
    call check_error(file, stat, zon_wrong_kind, 'run.zon:4:12: error: `Run/Title` is a string')
    call file%get('Run/Cells[3]', cells, 1, stat)
    call check_error(file, stat, zon_out_of_range, 'run.zon:2:20: error: ')
    call file%get('Run/Depth[2]', single, stat=stat)
    call check_error(file, stat, zon_out_of_range, 'run.zon:3:17: error: ')
    call check(cells == 7 .and. abs(single - huge(single)) <= 0, 'unchanged after an error')
  end subroutine

  subroutine test_arrays()
    type(zon_file) :: file
    integer, allocatable :: cells(:)
    integer(int64), allocatable :: large(:)
    real(real64), allocatable :: depths(:)
    real(real32), allocatable :: singles(:)
    logical, allocatable :: are_on(:)
    integer :: stat, i

    call file%parse(text, 'run.zon')
    call file%get('Run/Cells', large)
    call check(size(large) == 3 .and. large(3) == huge(large), '64-bit integers')
    call file%get('Run/Depth', depths)
    call check(size(depths) == 4 .and. abs(depths(3) - 7) <= 0, 'reals')
    call file%get('Run/On', are_on)
    call check(size(are_on) == 2 .and. are_on(1) .and. .not. are_on(2), 'logicals')
    call file%get('Run/Names', names)
    call check(size(names) == 3 .and. len(names) == 4, 'strings have the length of the longest')
    call check(names(1) == 'a' .and. names(2) == 'long' .and. names(3) == '', 'strings')

    call file%get('Run/Missing', cells, default=[1, 2])
    call check(size(cells) == 2, 'default of integers')
    allocate (singles(0))
    call file%get('Run/Empty', singles, default=singles)
    call check(size(singles) == 0, 'an empty default')
    call file%get('Run/Missing', names, default=['red  ', 'green'])
    call check(size(names) == 2 .and. names(2) == 'green', 'default of strings')
    call file%get('Run/Missing', names, default=names)
    call check(size(names) == 2 .and. names(2) == 'green', 'an array is its own default')

    call file%get('Run/Cells', cells, stat=stat)
    call check_error(file, stat, zon_out_of_range, 'run.zon:2:20: error: ')
    call file%get('Run/Depth', singles, stat=stat)
    call check_error(file, stat, zon_out_of_range, 'run.zon:3:17: error: ')
    call file%get('Run/Holes', depths, default=[1.0_real64], stat=stat)
    call check_error(file, stat, zon_missing, 'run.zon:7:14: error: ')
    call check(size(cells) == 2 .and. size(singles) == 0 .and. size(depths) == 4, 'unchanged arrays')

    call file%set('Run/Cells', [(i, i=1, 100000)])
    call file%get('Run/Cells', cells)
    call check(size(cells) == 100000 .and. all(cells == [(i, i=1, 100000)]), 'many integers')
  end subroutine

  subroutine test_errors()
    type(zon_file) :: file, other
    integer :: stat, n
    character(len=:), allocatable :: before
    type(zon_report), allocatable :: reports(:)

    n = 5
    call file%get('Run/Cells', n, stat=stat)
    call check_error(file, stat, zon_bad_argument, 'no file is loaded')
    call check(.not. file%has('') .and. file%count('Quay') == 0, 'nothing in no file')
    call file%save(stat=stat)
    call check_error(file, stat, zon_bad_argument, 'no file is loaded')
    call file%load('missing.zon', stat)
    call check_error(file, stat, zon_cannot_open, 'missing.zon')
    call file%load(achar(0), stat)
    call check_error(file, stat, zon_bad_argument, 'zero byte')
    call file%load(trim(folder) // '/harbour-faulty.zon', stat)
    call check_error(file, stat, zon_faulty, 'harbour-faulty.zon:9:24: error: ')
    call file%reports(reports)
    call check(size(reports) == 1, 'one report')
    call check(reports(1)%rule == 'unclosed-bar' .and. reports(1)%place%line == 9 .and. reports(1)%place%column == 24 &
      .and. reports(1)%related%line == 10 .and. reports(1)%text == file%errmsg(), 'the parts of a report')
    call file%get('Run/Step', n, stat=stat)
    call check_error(file, stat, zon_bad_argument, 'no file is loaded')
    call file%parse('[Run] A = 1 EndSect' // achar(0), stat=stat)
    call check_error(file, stat, zon_faulty, '0x00')

    call file%parse(text, 'run.zon', stat)
    call check(stat == zon_ok .and. file%errmsg() == '', 'no error')
    call file%get('Rum/Cells', n, stat=stat)
    call check_error(file, stat, zon_missing, 'did you mean Run?')
    call file%get('Run/Cells' // achar(0), n, stat=stat)
    call check_error(file, stat, zon_bad_argument, 'zero byte')
    call file%get('Run//Cells', n, stat=stat)
    call check_error(file, stat, zon_bad_argument, 'Run//Cells')
    call file%report('Run/Cells[2]', 'too few', 'use 1 or more', stat)
    call check_error(file, stat, zon_out_of_range, 'run.zon:2:16: error: too few' // newline)
    call check_error(file, stat, zon_out_of_range, newline // 'hint: use 1 or more')
    call file%report('Run/Steps', 'too long', stat=stat)
    call check_error(file, stat, zon_out_of_range, 'run.zon:1:1: error: too long')
    call file%parse('[A] K = 1 EndSect' // newline // '[B] K = 3000000000 EndSect', 'w.zon')
    call check(index(file%warnings(), 'w.zon:2:9: warning: ') == 1, 'a warning does not stop')
    call check(n == 5, 'unchanged after each error')

    other = file
    call other%close()
    call file%get('A/K', n, stat=stat)
    call check_error(file, stat, zon_bad_argument, 'the file was closed')
    before = zon_status_text(zon_bad_argument)
    call check(len(before) > 0, 'text of a status')
  end subroutine

  subroutine test_setting()
    type(zon_file) :: file
    character(len=:), allocatable :: written, before
    integer :: stat

    call file%parse('[Run]' // newline // '   Step = 60 // seconds' // newline // 'EndSect' // newline)
    call file%set('Run/Step', 5)
    call file%set('Run/Large', huge(1_int64))
    call file%set('Run/Single', 0.1_real32)
    call file%set('Run/Least', transfer(1, 1.0_real32))
    call file%set('Run/Third', 1.0_real32 / 3)
    call file%set('Run/Double', 0.1_real64)
    call file%set('Run/On', .true.)
    call file%set('Run/Title', 'it''s  ')
    call file%set_filename('Run/Chart', 'maps/a  ')
    call file%set_text('Run/Point', '1, 2.5 {m}')
    call file%set('Run/Cells', [1, 2])
    call file%set('Run/Longs', [3_int64])
    call file%set('Run/Singles', [0.1_real32, 3.4028235e38_real32])
    call file%set('Run/Doubles', [1d300])
    call file%set('Run/Flags', [.true., .false.])
    call file%set('Run/Names', ['a   ', 'long'])
    call file%set('Run/None', [integer ::])
    call file%set('Run/Part/Depth', 1)
    call file%to_text(written)
    call check(written == '[Run]' // newline // '   Step = 5 // seconds' // newline // &
      '   Large = 9223372036854775807' // newline // '   Single = 0.1' // newline // &
      '   Least = 1.4013e-45' // newline // '   Third = 0.33333334' // newline // '   Double = 0.1' // newline // &
      '   On = true' // newline // '   Title = ''it''''s  ''' // newline // '   Chart = |maps/a|' // newline // &
      '   Point = 1, 2.5 {m}' // newline // '   Cells = 1, 2' // newline // '   Longs = 3' // newline // &
      '   Singles = 0.1, 3.4028235e+38' // newline // '   Doubles = 1e+300' // newline // &
      '   Flags = true, false' // newline // '   Names = ''a'', ''long''' // newline // '   None = ' // newline // &
      '   [Part]' // newline // '      Depth = 1' // newline // '   EndSect  // Part' // newline // &
      'EndSect' // newline, 'what is set: ' // written)

    before = written
    call file%set('Run/Step', ieee_value(1.0_real64, ieee_positive_inf), stat)
    call check_error(file, stat, zon_out_of_range, 'Run/Step')
    call file%set('Run/Step', [0.0_real32, ieee_value(1.0_real32, ieee_quiet_nan)], stat)
    call check_error(file, stat, zon_out_of_range, 'Run/Step')
    call file%set('Run/Title', 'a' // achar(0) // 'b', stat)
    call check_error(file, stat, zon_bad_argument, 'zero byte')
    call file%set('Run/Names', ['ab', 'c' // achar(0)], stat)
    call check_error(file, stat, zon_bad_argument, 'zero byte')
    call file%set_filename('Run/Chart', achar(0), stat)
    call check_error(file, stat, zon_bad_argument, 'zero byte')
    call file%set_text('Run/Step', '1, EndSect', stat)
    call check_error(file, stat, zon_faulty, 'Run/Step')
    call file%set('Step', 1, stat)
    call check_error(file, stat, zon_bad_argument, 'Step')
    call file%remove('Run/Steps', stat)
    call check_error(file, stat, zon_missing, 'did you mean Step?')
    call file%to_text(written)
    call check(written == before, 'unchanged after each error')
    call file%remove('Run/Step')
    call check(.not. file%has('Run/Step'), 'removed')
  end subroutine

  subroutine test_finding()
    type(zon_file) :: file
    integer :: n, stat, length
    type(zon_place) :: place
    character(len=:), allocatable :: remark

    call file%parse(text, 'run.zon')
    call check(file%has('Run/') .and. file%has('Run/Cells[3]') .and. .not. file%has('Run/Cells[4]'), 'has')
    call check(file%count('Quay') == 2 .and. file%count('Quay:2/Berth') == 1 .and. file%count('Quay/Berth') == 0 &
      .and. file%count('Run/Cells[1]') == 3, 'count')
    do n = 1, file%count('Quay')
      call file%get(zon_nth('Quay', n) // '/Length', length)
      call check(length == n, 'a loop')
    end do
    call check(file%kind('Run') == zon_section .and. file%kind('Run/Date[1]') == zon_datetime &
      .and. file%kind('Run/X') == 0, 'kinds')
    call file%get_place('Run/Cells[2]', place)
    call check(place%file == 'run.zon' .and. place%line == 2 .and. place%column == 16 .and. place%end_column == 18, 'place')
    call file%set_text('Run/Empty', '5 {new}')
    call file%get_place('Run/Empty[1]', place)
    call check(place%file == '' .and. place%line == 0, 'no place')
    call file%get_remark('Run/Empty[1]', remark)
    call check(remark == 'new', 'remark')
    call file%get_remark('Run/Cells', remark)
    call check(remark == '', 'no remark')
    call file%get_remark('Rum', remark, stat)
    call check_error(file, stat, zon_missing, 'did you mean Run?')
    call file%remove('Run/Empty')
    call file%sections('', names)
    call check(size(names) == 3 .and. names(1) == 'Run' .and. names(3) == 'Quay', 'sections of the file')
    call file%keywords('Run', names)
    call check(size(names) == 8 .and. names(8) == 'Date', 'keywords')
    call file%sections('Run', names)
    call check(size(names) == 0, 'no sections')
    call file%keywords('Rum', names, stat)
    call check(stat == zon_missing .and. size(names) == 0, 'keywords of nothing')

    call file%unread(n, stat)
    call check_error(file, stat, zon_missing, 'not watched')
    call file%watch()
    call file%get('Quay/Length', length)
    call file%unread(n)
    call check(n == 9 .and. index(file%warnings(), 'warning') > 0, 'unread')
  end subroutine

  subroutine test_saving()
    type(zon_file) :: file, again
    character(len=:), allocatable :: name, before, after
    integer :: stat
    logical :: exists

    name = trim(folder) // '/harbour-plain.zon'
    call file%load(name)
    call file%to_text(before)
    call file%set('Quay/Length', 415.0)
    call file%save(flags=zon_backup)
    call again%load(name)
    call again%to_text(after)
    call check(after == before(:index(before, '412.5') - 1) // '415.0' // before(index(before, '412.5') + 5:), &
      'one number is changed')
    inquire (file=name // '~', exist=exists)
    call check(exists, 'the backup')
    call again%save(trim(folder) // '/harbour.zon  ', stat)
    call check_error(again, stat, zon_changed, 'harbour.zon')
    call again%save(trim(folder) // '/harbour.zon', stat, zon_new)
    call check_error(again, stat, zon_exists, 'harbour.zon')
    call again%save(trim(folder) // '/no/folder.zon', stat)
    call check_error(again, stat, zon_cannot_write, 'folder.zon')
    call again%save('a' // achar(0), stat)
    call check_error(again, stat, zon_bad_argument, 'zero byte')
    call again%save(stat=stat, flags=4096)
    call check_error(again, stat, zon_bad_argument, 'the flags are unknown')
    call file%parse('')
    call file%set('A/K', 1)
    call file%save(stat=stat)
    call check_error(file, stat, zon_bad_argument, 'it has no name yet')
    call file%save(trim(folder) // '/new.zon')
    call again%load(trim(folder) // '/new.zon')
    call check(again%has('A/K'), 'a file from nothing')
  end subroutine

  subroutine test_comparing()
    type(zon_file) :: file, other, template, none
    type(zon_difference), allocatable :: differences(:)
    character(len=:), allocatable :: written
    integer :: stat, n

    call template%parse('[A()] K {>= 0} = 1.0 EndSect', 'template.zon')
    call file%parse('[A] K = 1.0 EndSect [A] K = 2.0 // two' // newline // 'EndSect', 'file.zon')
    call file%validate(template)
    call other%parse('[A] K = 3.0 EndSect [A] K = 1.0 EndSect [A] K = 2.5 L = 1 EndSect', 'other.zon')
    call other%validate(template, stat)
    call check_error(other, stat, zon_mismatch, 'other.zon:1:53: error: ')
    call file%validate(none, stat)
    call check_error(file, stat, zon_bad_argument, 'not compared')

    call file%diff(other, differences, absolute=0.5d0)
    call check(size(differences) == 2, 'two differences')
    call check(differences(1)%change == zon_added .and. differences(1)%path == 'A', 'a section was added')
    call check(differences(2)%change == zon_added .and. differences(2)%path == 'A:3/L', 'a keyword was added')
    call file%diff(file, differences)
    call check(size(differences) == 0, 'no differences')
    call file%diff(other, differences)
    call check(differences(2)%path == 'A:3/K[1]' .and. differences(2)%before == '2.0' .and. differences(2)%after == '2.5', &
      'values before and after')
    call file%diff(other, differences, key='K')
    n = count([(differences(n)%change == zon_removed, n=1, size(differences))])
    call check(n == 1, 'a key that is gone')
    call file%diff(other, differences, relative=-1d0, stat=stat)
    call check_error(file, stat, zon_bad_argument, 'not compared')

    call file%merge(other)
    call file%to_text(written)
    call check(index(written, 'K = 1.0 // two') > 0 .and. file%count('A') == 3, 'merged: ' // written)
    call file%merge(none, stat)
    call check_error(file, stat, zon_bad_argument, 'not merged')
  end subroutine

  ! Copies, function results and objects of other types never close a file twice or early.
  subroutine test_variables()
    type(zon_file) :: file, files(2)
    type(zon_file), allocatable :: made, grown(:)
    type(holder) :: one, two
    integer :: i

    call file%parse('[A] K = 1 EndSect')
    call file%parse('[A] K = 2 EndSect')
    call check(value_in(file) == 2, 'loaded twice')
    file = file
    call check(value_in(file) == 2, 'assigned to itself')
    call use_copy(file)
    call check(value_in(file) == 2, 'after the end of a copy')
    files(2) = file
    files(1) = files(2)
    files = files([2, 1])
    call file%parse('[A] K = 3 EndSect')
    call check(value_in(files(1)) == 2 .and. value_in(files(2)) == 2 .and. value_in(file) == 3, 'copies stay')

    do i = 1, 20
      file = opened(i)
      call check(value_in(file) == i, 'a function result')
    end do
    allocate (made, source=file)
    call check(value_in(made) == 20, 'a copy by allocation')
    deallocate (made)
    call check(value_in(file) == 20, 'after its end')
    one = holder(file, 1)
    two = one
    call check(value_in(one%file) == 20 .and. value_in(two%file) == 20, 'components')
    allocate (grown(30))
    do i = 1, size(grown)
      call grown(i)%parse('[A] K = 4 EndSect')
    end do
    call check(value_in(grown(1)) == 4 .and. value_in(two%file) == 20, 'many files')
    deallocate (grown)
    call file%close()
    call check(.not. file%has('A') .and. .not. one%file%has('A') .and. .not. two%file%has('A'), 'closed for copies')
  end subroutine

  function opened(n) result(file)
    integer, intent(in) :: n
    type(zon_file) :: file
    character(len=20) :: digits
    write (digits, '(i0)') n
    call file%parse('[A] K = ' // trim(digits) // ' EndSect')
  end function

  integer function value_in(file)
    type(zon_file), intent(in) :: file
    value_in = -1
    call file%get('A/K', value_in, default=-2)
  end function

  subroutine use_copy(file)
    type(zon_file), intent(in) :: file
    type(zon_file) :: copy
    copy = file
    call check(value_in(copy) == 2, 'a copy')
  end subroutine

  subroutine stop_by(what)
    character(len=*), intent(in) :: what
    type(zon_file) :: file
    integer :: n
    select case (what)
    case ('load')
      call file%load(trim(folder) // '/harbour-faulty.zon')
    case ('get')
      call file%parse(text, 'run.zon')
      call file%get('Run/Title', n)
    case ('report')
      call file%parse(text, 'run.zon')
      call file%report('Run/Cells', 'too many cells')
    end select
    print '(a)', 'not stopped'
  end subroutine
end program
