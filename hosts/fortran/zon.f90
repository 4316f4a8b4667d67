! Reads, changes and saves parameter files of zon: Fortran 2008 over the C functions of zonx.h and zon.h.
!
!     use zon
!     type(zon_file) :: file
!     integer :: cells
!     call file%load('harbour.zon')
!     call file%get('Run/Cells', cells, default=40)
!     call file%set('Run/Cells', 2 * cells)
!     call file%save()
!
! Every subroutine has an optional last argument `stat`, a status such as zon_missing. Without it an error
! prints its report on the standard error and stops the program. With it the report is in errmsg().
!
! A zon_file is a key of three numbers: a slot of the table `slots`, the serial number of the file in that
! slot, and the address of the variable that counts as a user of the file. The file is closed when its last
! user is finalized. A copy that was made without the defined assignment (by allocate with source=, by a
! structure constructor) has the address of another variable, so it is no user: it reads the file as long as
! the file is open, and closes nothing. This is also why the type has no pointer and no allocatable
! component: some compilers finalize temporaries that were never initialized, and copy components bit by bit.
! A key that is out of date, or is no key, fits no slot.
!
! Tested by test.f90.
module zon
  use, intrinsic :: iso_c_binding
  use, intrinsic :: iso_fortran_env, only: error_unit, int32, int64, real32, real64
  use, intrinsic :: ieee_arithmetic, only: ieee_is_finite
  implicit none
  private
  public :: zon_file, zon_difference, zon_place, zon_report, zon_nth, zon_status_text

  ! The status of a call.
  integer, parameter, public :: zon_ok = 0
  integer, parameter, public :: zon_bad_argument = 1   ! no file is loaded, a malformed path, a zero byte
  integer, parameter, public :: zon_no_memory = 2
  integer, parameter, public :: zon_cannot_open = 3
  integer, parameter, public :: zon_cannot_read = 4
  integer, parameter, public :: zon_cannot_write = 5
  integer, parameter, public :: zon_faulty = 6         ! the text has errors
  integer, parameter, public :: zon_unwritable = 7     ! the format cannot express a value
  integer, parameter, public :: zon_changed = 8        ! the file is not the one that was loaded
  integer, parameter, public :: zon_exists = 9
  integer, parameter, public :: zon_missing = 10       ! no such section, keyword or value
  integer, parameter, public :: zon_wrong_kind = 11
  integer, parameter, public :: zon_out_of_range = 12
  integer, parameter, public :: zon_mismatch = 13      ! the file does not conform to the template

  ! How a file is saved: 0 or a sum.
  integer, parameter, public :: zon_plain = 1              ! in a uniform layout, without comments
  integer, parameter, public :: zon_new = 2                ! only if nothing has the name
  integer, parameter, public :: zon_overwrite = 4          ! also a file that has changed, and another file
  integer, parameter, public :: zon_backup = 8             ! the old file stays, as its name and "~"
  integer, parameter, public :: zon_names_as_written = 16  ! file names stay as they are in another folder

  ! The kinds of nodes; 0 for none, 1 for the whole file.
  integer, parameter, public :: zon_section = 2
  integer, parameter, public :: zon_keyword = 3
  integer, parameter, public :: zon_integer = 6
  integer, parameter, public :: zon_real = 7
  integer, parameter, public :: zon_logical = 8
  integer, parameter, public :: zon_string = 9
  integer, parameter, public :: zon_filename = 10
  integer, parameter, public :: zon_placeholder = 11   ! an empty place of a default definition
  integer, parameter, public :: zon_substitution = 12  ! %name
  integer, parameter, public :: zon_datetime = 13
  integer, parameter, public :: zon_unknown = 14       ! a remark alone
  integer, parameter, public :: zon_empty = 15         ! an empty place
  integer, parameter, public :: zon_clob = 16

  ! How serious a report is.
  integer, parameter, public :: zon_error = 0
  integer, parameter, public :: zon_warning = 1
  integer, parameter, public :: zon_note = 2

  ! A range of a text. Columns count bytes; 0 is unknown.
  type :: zon_place
    character(len=:), allocatable :: file    ! '' if no place is known
    integer :: line = 0, column = 0          ! of the first character, from 1
    integer :: end_line = 0, end_column = 0  ! behind the last character
  end type
  type :: zon_report
    integer :: severity = zon_error
    character(len=:), allocatable :: rule  ! a word that never changes, such as "unclosed-section"
    character(len=:), allocatable :: message, hint
    type(zon_place) :: place, related      ! the related one is, for example, the line of the template
    character(len=:), allocatable :: related_message
    character(len=:), allocatable :: text  ! all of this, as errmsg has it
  end type

  ! What a difference between two files is.
  integer, parameter, public :: zon_added = 0
  integer, parameter, public :: zon_removed = 1
  integer, parameter, public :: zon_different = 2
  integer, parameter, public :: zon_moved = 3
  type :: zon_difference
    integer :: change = zon_added
    character(len=:), allocatable :: path  ! in the second file, or in the first for zon_removed
    character(len=:), allocatable :: before, after  ! a value as it is written; '' if there is none
  end type

  ! A parameter file. Assignment makes a second variable of the same file; the file is closed when the last
  ! one goes, or by close.
  type :: zon_file
    private
    integer(c_int) :: slot = 0
    integer(int64) :: serial = 0
    integer(c_intptr_t) :: user = 0  ! address of the variable that counts, 0 for none
  contains
    ! (name [, stat]) loads a file. The one that the variable had is closed before.
    procedure :: load
    ! (text [, name] [, stat]) loads a text; '' begins an empty file. The name is for reports, and file names
    ! are relative to it.
    procedure :: parse
    ! () closes the file, also for copies of the variable.
    procedure :: close => close_file

    ! (path, variable [, default] [, stat]) reads a value, or all values of a keyword into an allocatable
    ! array. The default is for a keyword that is missing or has one empty place. The variable is unchanged
    ! if the status is not zon_ok. An integer can be read as a real, nothing else is converted; a real(4) is
    ! rounded. Character arrays have the length of the longest value.
    generic :: get => get_int32, get_int64, get_real32, get_real64, get_logical, get_string, &
      get_int32s, get_int64s, get_real32s, get_real64s, get_logicals, get_strings
    ! (path, variable [, default] [, stat]) reads a text into a variable of fixed length. A longer text is
    ! zon_out_of_range; trailing blanks do not count.
    procedure :: get_fixed
    ! (path, variable [, default] [, stat]) reads a file name as its path.
    procedure :: get_filename
    ! (path, variable [, stat]) reads a value of any kind, as it is written in the file.
    procedure :: get_text

    ! (path, value [, stat]) sets a value, or all values of a keyword from an array. What is missing is
    ! created. A character value is set with its trailing blanks, those of an array without them.
    generic :: set => set_int32, set_int64, set_real32, set_real64, set_logical, set_string, &
      set_int32s, set_int64s, set_real32s, set_real64s, set_logicals, set_strings
    procedure :: set_filename
    ! (path, text [, stat]) sets all values from a text as in a file: "1, 2.5 {m}, 'x'".
    procedure :: set_text
    ! (path [, stat]) removes a section, a keyword or, with [n], a value.
    procedure :: remove

    ! (path) is true if there is such a section, keyword or value.
    procedure :: has
    ! (path) is the number of sections or keywords of this name beside each other, 0 if there is none; for a
    ! path that ends with [1], the number of values.
    procedure :: count => count_instances
    ! (path, names [, stat]) the names of all sections, or keywords, of a section; of the file for ''.
    procedure :: sections
    procedure :: keywords
    ! (path) is the kind of a section or keyword or, with [n], of a value, such as zon_real; 0 for none.
    procedure :: kind => kind_of
    ! (path, place [, stat]) where it is in the text that was loaded; no place if it was changed since.
    procedure :: get_place
    ! (path, remark [, stat]) its remark without the braces; '' if it has none.
    procedure :: get_remark

    ! (path, message [, hint] [, stat]) an error of the host's own, with the place of the value. The status
    ! is zon_out_of_range.
    procedure :: report
    ! () the reports of the last call that failed.
    procedure :: errmsg
    ! () the warnings of the last load or parse, or what the last call of unread found.
    procedure :: warnings
    ! (list) the reports that errmsg or warnings has, one by one, of the last call that had some.
    procedure :: reports

    ! ([name] [, stat] [, flags]) saves in place, with all comments; see zon_plain to zon_names_as_written.
    procedure :: save => save_file
    ! (text [, stat] [, flags]) the text that save would write.
    procedure :: to_text
    ! (template [, stat]) checks the file; the status is zon_mismatch if it does not conform.
    procedure :: validate
    ! (other, differences [, key] [, relative] [, absolute] [, stat]) what the other file has changed.
    ! Repeated sections are paired by the values of the keyword `key`; the other two are tolerances of reals.
    procedure :: diff
    ! (overlay [, stat]) gives the file every keyword of another one.
    procedure :: merge => merge_file
    ! ([on] [, stat]) starts or stops to watch which keywords are read.
    procedure :: watch
    ! (count [, stat]) the number of keywords that were not read since then; see warnings.
    procedure :: unread
    ! () the handle, for the functions of zon.h and zonx.h; null if no file is loaded.
    procedure :: handle => handle_of

    generic :: assignment(=) => assign
    procedure, private :: assign
    procedure, private :: get_int32, get_int64, get_real32, get_real64, get_logical, get_string
    procedure, private :: get_int32s, get_int64s, get_real32s, get_real64s, get_logicals, get_strings
    procedure, private :: set_int32, set_int64, set_real32, set_real64, set_logical, set_string
    procedure, private :: set_int32s, set_int64s, set_real32s, set_real64s, set_logicals, set_strings
    final :: finalize
  end type

  ! What belongs to a file. The memory of a slot is used again, never freed.
  type :: file_state
    type(c_ptr) :: handle = c_null_ptr
    integer(int64) :: serial = 0  ! 0: free
    integer :: users = 0
    integer(c_int) :: next_free = 0
    character(len=:), allocatable :: message
    character(len=:), allocatable :: warnings
    type(zon_report), allocatable :: reports(:)
  end type
  type :: file_slot
    type(file_state), pointer :: state => null()
  end type
  type(file_slot), allocatable :: slots(:)
  integer(c_int) :: first_free = 0
  integer(int64) :: last_serial = 0
  ! A mutex of POSIX threads. Zeros are its initial value on Linux; no type there has more than 64 bytes.
  integer(c_int64_t), target :: mutex(8) = 0

  type, bind(C) :: c_place
    type(c_ptr) :: file
    integer(c_int) :: line, column, end_line, end_column
    integer(c_size_t) :: offset, length
  end type
  type, bind(C) :: c_report
    integer(c_int) :: severity
    type(c_ptr) :: rule, message, hint
    type(c_place) :: place, related
    type(c_ptr) :: related_message, source_line
  end type
  type, bind(C) :: c_difference
    integer(c_int) :: change
    type(c_ptr) :: path, before, after
  end type
  type, bind(C) :: c_compare
    real(c_double) :: relative, absolute
  end type

  ! A text that grows, and the reports that it consists of.
  type :: text_buffer
    character(len=:), allocatable :: text
    integer :: used = 0
    type(zon_report), allocatable :: reports(:)
    integer :: count = 0
  end type
  type :: difference_buffer
    type(zon_difference), allocatable :: differences(:)
    integer :: count = 0
  end type

  ! Reals from here on are rounded to infinity in single precision.
  real(real64), parameter :: beyond_real32 = 2.0_real64**128 - 2.0_real64**103
  integer(c_int), parameter :: bad_argument = int(zon_bad_argument, c_int)  ! integer may have 64 bits
  character(len=*), parameter :: zero_byte = 'the text has a zero byte'
  integer, parameter :: first_room = 256

  interface
    integer(c_int) function pthread_mutex_lock(mutex) bind(C)
      import :: c_int, c_ptr
      type(c_ptr), value :: mutex
    end function
    integer(c_int) function pthread_mutex_unlock(mutex) bind(C)
      import :: c_int, c_ptr
      type(c_ptr), value :: mutex
    end function
    integer(c_size_t) function strlen(text) bind(C)
      import :: c_ptr, c_size_t
      type(c_ptr), value :: text
    end function
    subroutine zonClose(handle) bind(C, name='zonClose')
      import :: c_ptr
      type(c_ptr), intent(inout) :: handle
    end subroutine
    integer(c_int) function zonGetNoInstances(node) bind(C, name='zonGetNoInstances')
      import :: c_int, c_ptr
      type(c_ptr), value :: node
    end function
    integer(c_int) function zonGetNoSections(node) bind(C, name='zonGetNoSections')
      import :: c_int, c_ptr
      type(c_ptr), value :: node
    end function
    integer(c_int) function zonGetNoKeywords(node) bind(C, name='zonGetNoKeywords')
      import :: c_int, c_ptr
      type(c_ptr), value :: node
    end function
    type(c_ptr) function zonSectionByNum(node, n) bind(C, name='zonSectionByNum')
      import :: c_int, c_ptr
      type(c_ptr), value :: node
      integer(c_int), value :: n
    end function
    type(c_ptr) function zonKeywordByNum(node, n) bind(C, name='zonKeywordByNum')
      import :: c_int, c_ptr
      type(c_ptr), value :: node
      integer(c_int), value :: n
    end function
    type(c_ptr) function zonGetName(node) bind(C, name='zonGetName')
      import :: c_ptr
      type(c_ptr), value :: node
    end function

    type(c_ptr) function zonxStatusText(status) bind(C, name='zonxStatusText')
      import :: c_int, c_ptr
      integer(c_int), value :: status
    end function
    integer(c_size_t) function zonxFormatReport(report, buffer, size) bind(C, name='zonxFormatReport')
      import :: c_char, c_ptr, c_size_t
      type(c_ptr), value :: report
      character(kind=c_char), intent(inout) :: buffer(*)
      integer(c_size_t), value :: size
    end function
    integer(c_int) function zonxReportNode(node, severity, rule, message, hint, reporter, context) &
        bind(C, name='zonxReportNode')
      import :: c_char, c_funptr, c_int, c_ptr
      type(c_ptr), value :: node, context
      integer(c_int), value :: severity
      character(kind=c_char), intent(in) :: rule(*), message(*), hint(*)
      type(c_funptr), value :: reporter
    end function
    integer(c_int) function zonxReportPath(handle, path, status, reporter, context) &
        bind(C, name='zonxReportPath')
      import :: c_char, c_funptr, c_int, c_ptr
      type(c_ptr), value :: handle, context
      character(kind=c_char), intent(in) :: path(*)
      integer(c_int), value :: status
      type(c_funptr), value :: reporter
    end function
    integer(c_int) function zonxLoadFile(name, handle, reporter, context) bind(C, name='zonxLoadFile')
      import :: c_char, c_funptr, c_int, c_ptr
      character(kind=c_char), intent(in) :: name(*)
      type(c_ptr), intent(out) :: handle
      type(c_funptr), value :: reporter
      type(c_ptr), value :: context
    end function
    integer(c_int) function zonxLoadText(text, size, name, handle, reporter, context) &
        bind(C, name='zonxLoadText')
      import :: c_char, c_funptr, c_int, c_ptr, c_size_t
      character(kind=c_char), intent(in) :: text(*), name(*)
      integer(c_size_t), value :: size
      type(c_ptr), intent(out) :: handle
      type(c_funptr), value :: reporter
      type(c_ptr), value :: context
    end function
    integer(c_int) function zonxFind(handle, path, node) bind(C, name='zonxFind')
      import :: c_char, c_int, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      type(c_ptr), intent(inout) :: node
    end function

    integer(c_int) function zonxGetKind(node) bind(C, name='zonxGetKind')
      import :: c_int, c_ptr
      type(c_ptr), value :: node
    end function
    integer(c_int) function zonxWhere(node, place) bind(C, name='zonxWhere')
      import :: c_int, c_place, c_ptr
      type(c_ptr), value :: node
      type(c_place), intent(inout) :: place
    end function
    integer(c_int) function zonxGetRemark(node, remark) bind(C, name='zonxGetRemark')
      import :: c_int, c_ptr
      type(c_ptr), value :: node
      type(c_ptr), intent(inout) :: remark
    end function

    integer(c_int) function zonxGetInt(handle, path, value) bind(C, name='zonxGetInt')
      import :: c_char, c_int, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      integer(c_int), intent(inout) :: value
    end function
    integer(c_int) function zonxGetInt64(handle, path, value) bind(C, name='zonxGetInt64')
      import :: c_char, c_int, c_long_long, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      integer(c_long_long), intent(inout) :: value
    end function
    integer(c_int) function zonxGetDouble(handle, path, value) bind(C, name='zonxGetDouble')
      import :: c_char, c_double, c_int, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      real(c_double), intent(inout) :: value
    end function
    integer(c_int) function zonxGetBool(handle, path, value) bind(C, name='zonxGetBool')
      import :: c_char, c_int, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      integer(c_int), intent(inout) :: value
    end function
    integer(c_int) function zonxGetString(handle, path, value) bind(C, name='zonxGetString')
      import :: c_char, c_int, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      type(c_ptr), intent(inout) :: value
    end function
    integer(c_int) function zonxGetFilename(handle, path, value) bind(C, name='zonxGetFilename')
      import :: c_char, c_int, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      type(c_ptr), intent(inout) :: value
    end function
    integer(c_int) function zonxGetText(handle, path, value) bind(C, name='zonxGetText')
      import :: c_char, c_int, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      type(c_ptr), intent(inout) :: value
    end function
    integer(c_int) function zonxGetInts(handle, path, values, room, count) bind(C, name='zonxGetInts')
      import :: c_char, c_int, c_ptr, c_size_t
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      integer(c_int), intent(inout) :: values(*)
      integer(c_size_t), value :: room
      integer(c_size_t), intent(inout) :: count
    end function
    integer(c_int) function zonxGetInt64s(handle, path, values, room, count) bind(C, name='zonxGetInt64s')
      import :: c_char, c_int, c_long_long, c_ptr, c_size_t
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      integer(c_long_long), intent(inout) :: values(*)
      integer(c_size_t), value :: room
      integer(c_size_t), intent(inout) :: count
    end function
    integer(c_int) function zonxGetDoubles(handle, path, values, room, count) bind(C, name='zonxGetDoubles')
      import :: c_char, c_double, c_int, c_ptr, c_size_t
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      real(c_double), intent(inout) :: values(*)
      integer(c_size_t), value :: room
      integer(c_size_t), intent(inout) :: count
    end function
    integer(c_int) function zonxGetBools(handle, path, values, room, count) bind(C, name='zonxGetBools')
      import :: c_char, c_int, c_ptr, c_size_t
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      integer(c_int), intent(inout) :: values(*)
      integer(c_size_t), value :: room
      integer(c_size_t), intent(inout) :: count
    end function
    integer(c_int) function zonxGetStrings(handle, path, values, room, count) bind(C, name='zonxGetStrings')
      import :: c_char, c_int, c_ptr, c_size_t
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      type(c_ptr), intent(inout) :: values(*)
      integer(c_size_t), value :: room
      integer(c_size_t), intent(inout) :: count
    end function

    integer(c_int) function zonxSetInt64(handle, path, value) bind(C, name='zonxSetInt64')
      import :: c_char, c_int, c_long_long, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      integer(c_long_long), value :: value
    end function
    integer(c_int) function zonxSetDouble(handle, path, value) bind(C, name='zonxSetDouble')
      import :: c_char, c_double, c_int, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      real(c_double), value :: value
    end function
    integer(c_int) function zonxSetBool(handle, path, value) bind(C, name='zonxSetBool')
      import :: c_char, c_int, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      integer(c_int), value :: value
    end function
    integer(c_int) function zonxSetString(handle, path, value) bind(C, name='zonxSetString')
      import :: c_char, c_int, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*), value(*)
    end function
    integer(c_int) function zonxSetFilename(handle, path, value) bind(C, name='zonxSetFilename')
      import :: c_char, c_int, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*), value(*)
    end function
    integer(c_int) function zonxSetText(handle, path, text) bind(C, name='zonxSetText')
      import :: c_char, c_int, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*), text(*)
    end function
    integer(c_int) function zonxSetInt64s(handle, path, values, count) bind(C, name='zonxSetInt64s')
      import :: c_char, c_int, c_long_long, c_ptr, c_size_t
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      integer(c_long_long), intent(in) :: values(*)
      integer(c_size_t), value :: count
    end function
    integer(c_int) function zonxSetDoubles(handle, path, values, count) bind(C, name='zonxSetDoubles')
      import :: c_char, c_double, c_int, c_ptr, c_size_t
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      real(c_double), intent(in) :: values(*)
      integer(c_size_t), value :: count
    end function
    integer(c_int) function zonxSetBools(handle, path, values, count) bind(C, name='zonxSetBools')
      import :: c_char, c_int, c_ptr, c_size_t
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      integer(c_int), intent(in) :: values(*)
      integer(c_size_t), value :: count
    end function
    integer(c_int) function zonxSetStrings(handle, path, values, count) bind(C, name='zonxSetStrings')
      import :: c_char, c_int, c_ptr, c_size_t
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
      type(c_ptr), intent(in) :: values(*)
      integer(c_size_t), value :: count
    end function
    integer(c_int) function zonxRemove(handle, path) bind(C, name='zonxRemove')
      import :: c_char, c_int, c_ptr
      type(c_ptr), value :: handle
      character(kind=c_char), intent(in) :: path(*)
    end function

    integer(c_int) function zonxSave(handle, name, flags, reporter, context) bind(C, name='zonxSave')
      import :: c_funptr, c_int, c_ptr
      type(c_ptr), value :: handle, name, context
      integer(c_int), value :: flags
      type(c_funptr), value :: reporter
    end function
    integer(c_int) function zonxText(handle, flags, text, size, reporter, context) bind(C, name='zonxText')
      import :: c_funptr, c_int, c_ptr, c_size_t
      type(c_ptr), value :: handle, context
      integer(c_int), value :: flags
      type(c_ptr), intent(inout) :: text
      integer(c_size_t), intent(inout) :: size
      type(c_funptr), value :: reporter
    end function
    subroutine zonxFree(memory) bind(C, name='zonxFree')
      import :: c_ptr
      type(c_ptr), value :: memory
    end subroutine
    integer(c_int) function zonxValidate(template, candidate, reporter, context) bind(C, name='zonxValidate')
      import :: c_funptr, c_int, c_ptr
      type(c_ptr), value :: template, candidate, context
      type(c_funptr), value :: reporter
    end function
    integer(c_int) function zonxDiffByKey(before, after, key, options, visitor, context, count) &
        bind(C, name='zonxDiffByKey')
      import :: c_char, c_compare, c_funptr, c_int, c_ptr, c_size_t
      type(c_ptr), value :: before, after, context
      character(kind=c_char), intent(in) :: key(*)
      type(c_compare), intent(in) :: options
      type(c_funptr), value :: visitor
      integer(c_size_t), intent(inout) :: count
    end function
    integer(c_int) function zonxMerge(target, overlay) bind(C, name='zonxMerge')
      import :: c_int, c_ptr
      type(c_ptr), value :: target, overlay
    end function
    integer(c_int) function zonxWatch(handle, on) bind(C, name='zonxWatch')
      import :: c_int, c_ptr
      type(c_ptr), value :: handle
      integer(c_int), value :: on
    end function
    integer(c_int) function zonxReportUnread(handle, reporter, context, count) &
        bind(C, name='zonxReportUnread')
      import :: c_funptr, c_int, c_ptr, c_size_t
      type(c_ptr), value :: handle, context
      type(c_funptr), value :: reporter
      integer(c_size_t), intent(inout) :: count
    end function
  end interface

contains

  ! ---- Texts ----------------------------------------------------------------------------------------------

  ! "Quay:2", for paths in a loop: file%get(zon_nth('Quay', n) // '/Length', length).
  pure function zon_nth(name, n) result(path)
    character(len=*), intent(in) :: name
    integer, intent(in) :: n
    character(len=:), allocatable :: path
    character(len=20) :: digits
    write (digits, '(i0)') n
    path = trim(name) // ':' // trim(digits)
  end function

  ! A text for a status, such as "the value is of another kind".
  function zon_status_text(status) result(text)
    integer, intent(in) :: status
    character(len=:), allocatable :: text
    text = text_of(zonxStatusText(int(status, c_int)))
  end function

  function text_of(pointer) result(text)
    type(c_ptr), intent(in) :: pointer
    character(len=:), allocatable :: text
    text = ''
    if (c_associated(pointer)) text = text_of_size(pointer, strlen(pointer))
  end function

  function text_of_size(pointer, size) result(text)
    type(c_ptr), intent(in) :: pointer
    integer(c_size_t), intent(in) :: size
    character(len=:), allocatable :: text
    character(kind=c_char), pointer :: letters(:)
    integer(c_size_t) :: i
    call c_f_pointer(pointer, letters, [size])
    allocate (character(len=size) :: text)
    do i = 1, size
      text(i:i) = letters(i)
    end do
  end function

  ! Texts of C, padded with blanks to the length of the longest.
  subroutine copy_texts(pointers, texts)
    type(c_ptr), intent(in) :: pointers(:)
    character(len=:), allocatable, intent(inout) :: texts(:)
    integer(c_size_t) :: longest
    integer :: i
    longest = 0
    do i = 1, size(pointers)
      longest = max(longest, strlen(pointers(i)))
    end do
    if (allocated(texts)) deallocate (texts)
    allocate (character(len=longest) :: texts(size(pointers)))
    do i = 1, size(pointers)
      texts(i) = text_of(pointers(i))
    end do
  end subroutine

  ! A path for C. A zero byte would end it early, so it becomes a path that is malformed.
  pure function c_path(path) result(text)
    character(len=*), intent(in) :: path
    character(len=:), allocatable :: text
    text = trim(path) // c_null_char
    if (has_zero(path)) text = '[' // c_null_char
  end function

  pure logical function has_zero(text)
    character(len=*), intent(in) :: text
    has_zero = index(text, c_null_char) > 0
  end function

  ! The path of the n-th value of a keyword; of the keyword for 0.
  pure function path_of_value(path, n) result(text)
    character(len=*), intent(in) :: path
    integer(c_size_t), intent(in) :: n
    character(len=:), allocatable :: text
    character(len=20) :: digits
    text = trim(path)
    if (n == 0) return
    write (digits, '(i0)') n
    text = text // '[' // trim(digits) // ']'
  end function

  subroutine append(buffer, text)
    type(text_buffer), intent(inout) :: buffer
    character(len=*), intent(in) :: text
    character(len=:), allocatable :: larger
    if (.not. allocated(buffer%text)) allocate (character(len=1000) :: buffer%text)
    if (buffer%used + len(text) > len(buffer%text)) then
      allocate (character(len=2 * (buffer%used + len(text))) :: larger)
      larger(:buffer%used) = buffer%text(:buffer%used)
      call move_alloc(larger, buffer%text)
    end if
    buffer%text(buffer%used + 1:buffer%used + len(text)) = text
    buffer%used = buffer%used + len(text)
  end subroutine

  function content(buffer) result(text)
    type(text_buffer), intent(in) :: buffer
    character(len=:), allocatable :: text
    text = ''
    if (buffer%used > 0) text = buffer%text(:buffer%used)
  end function

  ! A reporter of the library: appends each report to a text_buffer.
  subroutine collect(report, context) bind(C)
    type(c_report), intent(in), target :: report
    type(c_ptr), value :: context
    type(text_buffer), pointer :: buffer
    character(kind=c_char), allocatable :: letters(:)
    integer(c_size_t) :: size, i
    call c_f_pointer(context, buffer)
    allocate (letters(1))
    size = zonxFormatReport(c_loc(report), letters, 0_c_size_t)
    deallocate (letters)
    allocate (letters(size + 1))
    size = zonxFormatReport(c_loc(report), letters, size + 1)
    call make_room(buffer)
    associate (copy => buffer%reports(buffer%count))
      allocate (character(len=size) :: copy%text)
      do i = 1, size
        copy%text(i:i) = letters(i)
      end do
      copy%severity = report%severity
      copy%rule = text_of(report%rule)
      copy%message = text_of(report%message)
      copy%hint = text_of(report%hint)
      copy%related_message = text_of(report%related_message)
      call copy_place(report%place, copy%place)
      call copy_place(report%related, copy%related)
      if (buffer%used > 0) call append(buffer, new_line('a'))
      call append(buffer, copy%text)
    end associate
  end subroutine

  ! Counts one more report, the last one of the list.
  subroutine make_room(buffer)
    type(text_buffer), intent(inout) :: buffer
    type(zon_report), allocatable :: larger(:)
    if (.not. allocated(buffer%reports)) allocate (buffer%reports(4))
    if (buffer%count == size(buffer%reports)) then
      allocate (larger(2 * buffer%count))
      larger(:buffer%count) = buffer%reports
      call move_alloc(larger, buffer%reports)
    end if
    buffer%count = buffer%count + 1
  end subroutine

  subroutine copy_place(from, to)
    type(c_place), intent(in) :: from
    type(zon_place), intent(inout) :: to
    to%file = text_of(from%file)
    to%line = from%line
    to%column = from%column
    to%end_line = from%end_line
    to%end_column = from%end_column
  end subroutine

  ! ---- Variables and their files ----------------------------------------------------------------------------

  subroutine lock()
    if (pthread_mutex_lock(c_loc(mutex)) /= 0) error stop 'zon: the mutex is not valid'
  end subroutine

  subroutine unlock()
    if (pthread_mutex_unlock(c_loc(mutex)) /= 0) error stop 'zon: the mutex is not valid'
  end subroutine

  ! The state that a key fits; null if the file was closed, or none was loaded. Called with the lock.
  function find_state(self) result(state)
    class(zon_file), intent(in) :: self
    type(file_state), pointer :: state
    state => null()
    if (.not. allocated(slots) .or. self%serial == 0) return
    if (self%slot < 1 .or. self%slot > size(slots)) return
    if (.not. associated(slots(self%slot)%state)) return
    if (slots(self%slot)%state%serial == self%serial) state => slots(self%slot)%state
  end function

  function state_of(self) result(state)
    class(zon_file), intent(in) :: self
    type(file_state), pointer :: state
    call lock()
    state => find_state(self)
    call unlock()
  end function

  ! The handle of the file; null if there is none, which the functions of C answer with zon_bad_argument.
  function handle_of(self) result(handle)
    class(zon_file), intent(in) :: self
    type(c_ptr) :: handle
    type(file_state), pointer :: state
    handle = c_null_ptr
    state => state_of(self)
    if (associated(state)) handle = state%handle
  end function

  function address_of(self) result(address)
    class(zon_file), intent(in), target :: self
    integer(c_intptr_t) :: address
    address = transfer(c_loc(self%serial), address)
  end function

  ! Frees the slot of a file. Called with the lock; returns the handle to be closed without it.
  subroutine vacate(slot, handle)
    integer(c_int), intent(in) :: slot
    type(c_ptr), intent(out) :: handle
    associate (state => slots(slot)%state)
      handle = state%handle
      state%handle = c_null_ptr
      state%serial = 0
      state%next_free = first_free
      if (allocated(state%message)) deallocate (state%message)
      if (allocated(state%warnings)) deallocate (state%warnings)
      if (allocated(state%reports)) deallocate (state%reports)
    end associate
    first_free = slot
  end subroutine

  ! Ends the use of a file by a variable, and closes the file if this was the last one.
  subroutine release(self)
    class(zon_file), intent(inout), target :: self
    type(file_state), pointer :: state
    type(c_ptr) :: handle
    handle = c_null_ptr
    call lock()
    state => find_state(self)
    if (associated(state) .and. self%user == address_of(self)) then
      state%users = state%users - 1
      if (state%users == 0) call vacate(self%slot, handle)
    end if
    call unlock()
    self%slot = 0
    self%serial = 0
    self%user = 0
    if (c_associated(handle)) call zonClose(handle)
  end subroutine

  ! Gives a variable a new state without a file. What it had is released.
  function new_state(self) result(state)
    class(zon_file), intent(inout), target :: self
    type(file_state), pointer :: state
    call release(self)
    call lock()
    if (first_free == 0) call add_slots()
    self%slot = first_free
    state => slots(first_free)%state
    first_free = state%next_free
    last_serial = last_serial + 1
    state%serial = last_serial
    state%users = 1
    self%serial = last_serial
    self%user = address_of(self)
    call unlock()
  end function

  subroutine add_slots()
    type(file_slot), allocatable :: larger(:)
    integer(c_int) :: old, i
    old = 0
    if (allocated(slots)) old = size(slots, kind=c_int)
    allocate (larger(2 * old + 8))
    if (old > 0) larger(:old) = slots
    do i = old + 1_c_int, size(larger, kind=c_int)
      allocate (larger(i)%state)
      larger(i)%state%next_free = first_free
      first_free = i
    end do
    call move_alloc(larger, slots)
  end subroutine

  ! The right side is counted before the left one is released: they may be the same variable.
  impure elemental subroutine assign(left, right)
    class(zon_file), intent(inout), target :: left
    class(zon_file), intent(in), target :: right
    type(file_state), pointer :: state
    integer(c_int) :: slot
    integer(int64) :: serial
    slot = right%slot
    serial = right%serial
    call lock()
    state => find_state(right)
    if (associated(state)) state%users = state%users + 1
    call unlock()
    call release(left)
    left%slot = slot
    left%serial = serial
    if (associated(state)) left%user = address_of(left)
  end subroutine

  impure elemental subroutine finalize(self)
    type(zon_file), intent(inout), target :: self
    call release(self)
  end subroutine

  subroutine close_file(self)
    class(zon_file), intent(inout), target :: self
    type(c_ptr) :: handle
    handle = c_null_ptr
    call lock()
    if (associated(find_state(self))) call vacate(self%slot, handle)
    call unlock()
    call release(self)
    if (c_associated(handle)) call zonClose(handle)
  end subroutine

  ! ---- Errors ---------------------------------------------------------------------------------------------

  function errmsg(self) result(text)
    class(zon_file), intent(in) :: self
    character(len=:), allocatable :: text
    type(file_state), pointer :: state
    text = ''
    state => state_of(self)
    if (.not. associated(state)) then
      text = 'error: ' // no_file(self)
    else if (allocated(state%message)) then
      text = state%message
    end if
  end function

  function warnings(self) result(text)
    class(zon_file), intent(in) :: self
    character(len=:), allocatable :: text
    type(file_state), pointer :: state
    text = ''
    state => state_of(self)
    if (.not. associated(state)) return
    if (allocated(state%warnings)) text = state%warnings
  end function

  subroutine reports(self, list)
    class(zon_file), intent(in) :: self
    type(zon_report), allocatable, intent(inout) :: list(:)
    type(file_state), pointer :: state
    state => state_of(self)
    if (allocated(list)) deallocate (list)
    if (associated(state)) then
      if (allocated(state%reports)) list = state%reports
    end if
    if (.not. allocated(list)) allocate (list(0))
  end subroutine

  function no_file(self) result(text)
    class(zon_file), intent(in) :: self
    character(len=:), allocatable :: text
    text = 'no file is loaded'
    if (self%serial == 0) return
    if (.not. associated(state_of(self))) text = 'the file was closed'
  end function

  ! Ends a call: returns the status, and keeps the reports. Without `stat` an error stops.
  subroutine conclude(self, status, found, stat)
    class(zon_file), intent(in) :: self
    integer(c_int), intent(in) :: status
    type(text_buffer), intent(in) :: found
    integer, intent(out), optional :: stat
    type(file_state), pointer :: state
    if (present(stat)) stat = status
    if (status /= zon_ok .and. .not. present(stat)) then
      write (error_unit, '(a)') content(found)
      error stop 1
    end if
    if (found%used == 0) return
    state => state_of(self)
    if (.not. associated(state)) return
    state%reports = found%reports(:found%count)
    if (status == zon_ok) then
      state%warnings = content(found)
    else
      state%message = content(found)
    end if
  end subroutine

  ! A report of this module.
  subroutine add_report(found, message)
    type(text_buffer), intent(inout) :: found
    character(len=*), intent(in) :: message
    call make_room(found)
    associate (own => found%reports(found%count))
      own%rule = ''
      own%message = message
      own%hint = ''
      own%related_message = ''
      own%place%file = ''
      own%related%file = ''
      own%text = 'error: ' // message
      call append(found, own%text)
    end associate
  end subroutine

  ! The same for a mistake that the library does not see.
  subroutine refuse(self, message, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: message
    integer, intent(out), optional :: stat
    type(text_buffer) :: found
    call add_report(found, message)
    call conclude(self, bad_argument, found, stat)
  end subroutine

  ! The same for a call with a path. `why` is the reason if the library does not know it.
  subroutine finish(self, path, status, stat, why)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    integer(c_int), intent(in) :: status
    integer, intent(out), optional :: stat
    character(len=*), intent(in), optional :: why
    type(text_buffer), target :: found
    type(c_ptr) :: handle
    integer(c_int) :: ignored
    if (status /= zon_ok) then
      handle = handle_of(self)
      if (.not. c_associated(handle)) then
        call add_report(found, no_file(self))
      else if (has_zero(path)) then
        call add_report(found, 'the path has a zero byte')
      else if (present(why)) then
        call add_report(found, '`' // trim(path) // '`: ' // why)
      else
        ignored = zonxReportPath(handle, c_path(path), status, c_funloc(collect), c_loc(found))
      end if
      if (found%used == 0) call add_report(found, '`' // trim(path) // '`: ' // zon_status_text(int(status)))
    end if
    call conclude(self, status, found, stat)
  end subroutine

  ! The same for a call with a reporter; `what` is named if nothing was reported.
  subroutine finish_reports(self, what, status, found, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: what
    integer(c_int), intent(in) :: status
    type(text_buffer), intent(inout) :: found
    integer, intent(out), optional :: stat
    if (status /= zon_ok .and. found%used == 0) then
      if (c_associated(handle_of(self))) then
        call add_report(found, what // ': ' // zon_status_text(int(status)))
      else
        call add_report(found, no_file(self))
      end if
    end if
    call conclude(self, status, found, stat)
  end subroutine

  ! A report of the host. It is placed at the value, or at the deepest part of the path that exists.
  subroutine report(self, path, message, hint, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path, message
    character(len=*), intent(in), optional :: hint
    integer, intent(out), optional :: stat
    type(text_buffer), target :: found
    type(c_ptr) :: node
    character(len=:), allocatable :: advice
    integer(c_int) :: status
    advice = ''
    if (present(hint)) advice = trim(hint)
    if (.not. c_associated(handle_of(self)) .or. has_zero(path)) then
      call finish(self, path, bad_argument, stat)
      return
    end if
    node = node_to_show(self, trim(path))
    status = zonxReportNode(node, 0_c_int, 'host' // c_null_char, trim(message) // c_null_char, &
      advice // c_null_char, c_funloc(collect), c_loc(found))
    if (status == zon_ok) status = zon_out_of_range
    call conclude(self, status, found, stat)
  end subroutine

  recursive function node_to_show(self, path) result(node)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    type(c_ptr) :: node
    integer :: slash
    node = handle_of(self)
    if (zonxFind(node, path // '[1]' // c_null_char, node) == zon_ok) return
    if (zonxFind(node, c_path(path), node) == zon_ok) return
    slash = index(path, '/', back=.true.)
    if (slash > 0) node = node_to_show(self, path(:slash - 1))
  end function

  ! ---- Loading and saving ---------------------------------------------------------------------------------

  subroutine load(self, name, stat)
    class(zon_file), intent(inout), target :: self
    character(len=*), intent(in) :: name
    integer, intent(out), optional :: stat
    type(file_state), pointer :: state
    type(text_buffer), target :: found
    integer(c_int) :: status
    state => new_state(self)
    if (has_zero(name)) then
      call refuse(self, 'the name of the file has a zero byte', stat)
      return
    end if
    status = zonxLoadFile(trim(name) // c_null_char, state%handle, c_funloc(collect), c_loc(found))
    call keep_if_good(state, status)
    call finish_reports(self, trim(name), status, found, stat)
  end subroutine

  subroutine parse(self, text, name, stat)
    class(zon_file), intent(inout), target :: self
    character(len=*), intent(in) :: text
    character(len=*), intent(in), optional :: name
    integer, intent(out), optional :: stat
    type(file_state), pointer :: state
    type(text_buffer), target :: found
    character(len=:), allocatable :: its_name
    integer(c_int) :: status
    its_name = ''
    if (present(name)) its_name = trim(name)
    state => new_state(self)
    if (has_zero(its_name)) then
      call refuse(self, 'the name of the text has a zero byte', stat)
      return
    end if
    status = zonxLoadText(text, len(text, c_size_t), its_name // c_null_char, state%handle, &
      c_funloc(collect), c_loc(found))
    call keep_if_good(state, status)
    call finish_reports(self, 'the text', status, found, stat)
  end subroutine

  ! A file with errors is not kept: half of it would look like the whole.
  subroutine keep_if_good(state, status)
    type(file_state), intent(inout) :: state
    integer(c_int), intent(in) :: status
    if (status /= zon_ok .and. c_associated(state%handle)) call zonClose(state%handle)
    if (status /= zon_ok) state%handle = c_null_ptr
  end subroutine

  subroutine save_file(self, name, stat, flags)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in), optional :: name
    integer, intent(out), optional :: stat
    integer, intent(in), optional :: flags
    type(text_buffer), target :: found
    character(kind=c_char), allocatable, target :: letters(:)
    type(c_ptr) :: its_name
    integer(c_int) :: status, its_flags
    integer :: i
    its_name = c_null_ptr
    its_flags = 0
    if (present(flags)) its_flags = int(flags, c_int)
    if (present(name)) then
      if (has_zero(name)) then
        call refuse(self, 'the name of the file has a zero byte', stat)
        return
      end if
      allocate (letters(len_trim(name) + 1))
      letters(size(letters)) = c_null_char
      do i = 1, len_trim(name)
        letters(i) = name(i:i)
      end do
      its_name = c_loc(letters)
    end if
    status = zonxSave(handle_of(self), its_name, its_flags, c_funloc(collect), c_loc(found))
    if (status == zon_bad_argument .and. c_associated(handle_of(self))) &
      call add_report(found, 'the file is not saved: it has no name yet, or the flags are unknown')
    call finish_reports(self, 'the file is not saved', status, found, stat)
  end subroutine

  subroutine to_text(self, text, stat, flags)
    class(zon_file), intent(in) :: self
    character(len=:), allocatable, intent(inout) :: text
    integer, intent(out), optional :: stat
    integer, intent(in), optional :: flags
    type(text_buffer), target :: found
    type(c_ptr) :: memory
    integer(c_size_t) :: size
    integer(c_int) :: status, its_flags
    memory = c_null_ptr
    size = 0
    its_flags = 0
    if (present(flags)) its_flags = int(flags, c_int)
    status = zonxText(handle_of(self), its_flags, memory, size, c_funloc(collect), c_loc(found))
    if (status == zon_ok) text = text_of_size(memory, size)
    call zonxFree(memory)
    call finish_reports(self, 'the file has no text', status, found, stat)
  end subroutine

  subroutine watch(self, on, stat)
    class(zon_file), intent(inout) :: self
    logical, intent(in), optional :: on
    integer, intent(out), optional :: stat
    integer(c_int) :: switch
    switch = 1
    if (present(on)) switch = merge(1_c_int, 0_c_int, on)
    call finish(self, '', zonxWatch(handle_of(self), switch), stat)
  end subroutine

  subroutine unread(self, count, stat)
    class(zon_file), intent(in) :: self
    integer, intent(inout) :: count
    integer, intent(out), optional :: stat
    type(text_buffer), target :: found
    type(file_state), pointer :: state
    integer(c_size_t) :: number
    integer(c_int) :: status
    number = 0
    state => state_of(self)
    if (associated(state)) state%warnings = ''
    status = zonxReportUnread(handle_of(self), c_funloc(collect), c_loc(found), number)
    if (status == zon_ok) count = int(number)
    call finish_reports(self, 'the file is not watched', status, found, stat)
  end subroutine

  ! ---- Comparing ------------------------------------------------------------------------------------------

  subroutine validate(self, template, stat)
    class(zon_file), intent(in) :: self
    class(zon_file), intent(in) :: template
    integer, intent(out), optional :: stat
    type(text_buffer), target :: found
    integer(c_int) :: status
    status = zonxValidate(handle_of(template), handle_of(self), c_funloc(collect), c_loc(found))
    call finish_reports(self, 'the file is not compared with its template', status, found, stat)
  end subroutine

  subroutine diff(self, other, differences, key, relative, absolute, stat)
    class(zon_file), intent(in) :: self
    class(zon_file), intent(in) :: other
    type(zon_difference), allocatable, intent(inout) :: differences(:)
    character(len=*), intent(in), optional :: key
    real(real64), intent(in), optional :: relative, absolute
    integer, intent(out), optional :: stat
    type(difference_buffer), target :: found
    type(text_buffer) :: no_reports
    type(c_compare) :: options
    character(len=:), allocatable :: its_key
    integer(c_size_t) :: count
    integer(c_int) :: status
    options = c_compare(0, 0)
    if (present(relative)) options%relative = relative
    if (present(absolute)) options%absolute = absolute
    its_key = ''
    if (present(key)) its_key = trim(key)
    status = zon_bad_argument
    if (.not. has_zero(its_key)) status = zonxDiffByKey(handle_of(self), handle_of(other), &
      its_key // c_null_char, options, c_funloc(add_difference), c_loc(found), count)
    if (status == zon_ok) then
      if (.not. allocated(found%differences)) allocate (found%differences(0))
      differences = found%differences(:found%count)
    end if
    call finish_reports(self, 'the files are not compared', status, no_reports, stat)
  end subroutine

  ! A visitor of the library: appends each difference to a difference_buffer.
  subroutine add_difference(difference, context) bind(C)
    type(c_difference), intent(in) :: difference
    type(c_ptr), value :: context
    type(difference_buffer), pointer :: buffer
    type(zon_difference), allocatable :: larger(:)
    call c_f_pointer(context, buffer)
    if (.not. allocated(buffer%differences)) allocate (buffer%differences(16))
    if (buffer%count == size(buffer%differences)) then
      allocate (larger(2 * buffer%count))
      larger(:buffer%count) = buffer%differences
      call move_alloc(larger, buffer%differences)
    end if
    buffer%count = buffer%count + 1
    associate (copy => buffer%differences(buffer%count))
      copy%change = difference%change
      copy%path = text_of(difference%path)
      copy%before = text_of_value(difference%before)
      copy%after = text_of_value(difference%after)
    end associate
  end subroutine

  ! A value as it is written; '' for no node, and for a section or keyword.
  function text_of_value(node) result(text)
    type(c_ptr), intent(in) :: node
    character(len=:), allocatable :: text
    type(c_ptr) :: found
    text = ''
    if (zonxGetKind(node) < zon_integer) return
    if (zonxGetText(node, [c_null_char], found) == zon_ok) text = text_of(found)
  end function

  subroutine merge_file(self, overlay, stat)
    class(zon_file), intent(inout) :: self
    class(zon_file), intent(in) :: overlay
    integer, intent(out), optional :: stat
    type(text_buffer) :: no_reports
    integer(c_int) :: status
    status = zonxMerge(handle_of(self), handle_of(overlay))
    call finish_reports(self, 'the file is not merged', status, no_reports, stat)
  end subroutine

  ! ---- Finding --------------------------------------------------------------------------------------------

  logical function has(self, path)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    type(c_ptr) :: node
    has = zonxFind(handle_of(self), c_path(path), node) == zon_ok
  end function

  integer function count_instances(self, path)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    type(c_ptr) :: node
    count_instances = 0
    if (zonxFind(handle_of(self), c_path(path), node) == zon_ok) count_instances = zonGetNoInstances(node)
  end function

  subroutine sections(self, path, names, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    character(len=:), allocatable, intent(inout) :: names(:)
    integer, intent(out), optional :: stat
    type(c_ptr) :: node
    type(c_ptr), allocatable :: found(:)
    integer(c_int) :: status, n
    status = zonxFind(handle_of(self), c_path(path), node)
    if (status == zon_ok) then
      allocate (found(zonGetNoSections(node)))
      do n = 1, size(found, kind=c_int)
        found(n) = zonGetName(zonSectionByNum(node, n))
      end do
      call copy_texts(found, names)
    end if
    call finish(self, path, status, stat)
  end subroutine

  subroutine keywords(self, path, names, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    character(len=:), allocatable, intent(inout) :: names(:)
    integer, intent(out), optional :: stat
    type(c_ptr) :: node
    type(c_ptr), allocatable :: found(:)
    integer(c_int) :: status, n
    status = zonxFind(handle_of(self), c_path(path), node)
    if (status == zon_ok) then
      allocate (found(zonGetNoKeywords(node)))
      do n = 1, size(found, kind=c_int)
        found(n) = zonGetName(zonKeywordByNum(node, n))
      end do
      call copy_texts(found, names)
    end if
    call finish(self, path, status, stat)
  end subroutine

  integer function kind_of(self, path)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    type(c_ptr) :: node
    kind_of = 0
    if (zonxFind(handle_of(self), c_path(path), node) == zon_ok) kind_of = zonxGetKind(node)
  end function

  subroutine get_place(self, path, place, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    type(zon_place), intent(inout) :: place
    integer, intent(out), optional :: stat
    type(c_ptr) :: node
    type(c_place) :: found
    integer(c_int) :: status
    status = zonxFind(handle_of(self), c_path(path), node)
    if (status == zon_ok) then
      found = c_place(c_null_ptr, 0, 0, 0, 0, 0, 0)
      status = zonxWhere(node, found)
      if (status == zon_missing) status = zon_ok
      call copy_place(found, place)
    end if
    call finish(self, path, status, stat)
  end subroutine

  subroutine get_remark(self, path, remark, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    character(len=:), allocatable, intent(inout) :: remark
    integer, intent(out), optional :: stat
    type(c_ptr) :: node, found
    integer(c_int) :: status
    status = zonxFind(handle_of(self), c_path(path), node)
    if (status == zon_ok) then
      found = c_null_ptr
      status = zonxGetRemark(node, found)
      if (status == zon_missing) status = zon_ok
      remark = text_of(found)
    end if
    call finish(self, path, status, stat)
  end subroutine

  ! ---- Reading --------------------------------------------------------------------------------------------

  subroutine get_int32(self, path, value, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    integer(int32), intent(inout) :: value
    integer(int32), intent(in), optional :: default
    integer, intent(out), optional :: stat
    integer(c_int) :: status
    status = zonxGetInt(handle_of(self), c_path(path), value)
    if (present(default) .and. status == zon_missing) then
      value = default
      status = zon_ok
    end if
    call finish(self, path, status, stat)
  end subroutine

  subroutine get_int64(self, path, value, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    integer(int64), intent(inout) :: value
    integer(int64), intent(in), optional :: default
    integer, intent(out), optional :: stat
    integer(c_int) :: status
    status = zonxGetInt64(handle_of(self), c_path(path), value)
    if (present(default) .and. status == zon_missing) then
      value = default
      status = zon_ok
    end if
    call finish(self, path, status, stat)
  end subroutine

  subroutine get_real64(self, path, value, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    real(real64), intent(inout) :: value
    real(real64), intent(in), optional :: default
    integer, intent(out), optional :: stat
    integer(c_int) :: status
    status = zonxGetDouble(handle_of(self), c_path(path), value)
    if (present(default) .and. status == zon_missing) then
      value = default
      status = zon_ok
    end if
    call finish(self, path, status, stat)
  end subroutine

  subroutine get_real32(self, path, value, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    real(real32), intent(inout) :: value
    real(real32), intent(in), optional :: default
    integer, intent(out), optional :: stat
    real(real64) :: found
    integer(c_int) :: status
    status = zonxGetDouble(handle_of(self), c_path(path), found)
    if (status == zon_ok) then
      if (abs(found) >= beyond_real32) status = zon_out_of_range
    end if
    if (status == zon_ok) value = real(found, real32)
    if (present(default) .and. status == zon_missing) then
      value = default
      status = zon_ok
    end if
    call finish(self, path, status, stat)
  end subroutine

  subroutine get_logical(self, path, value, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    logical, intent(inout) :: value
    logical, intent(in), optional :: default
    integer, intent(out), optional :: stat
    integer(c_int) :: status, found
    status = zonxGetBool(handle_of(self), c_path(path), found)
    if (status == zon_ok) value = found /= 0
    if (present(default) .and. status == zon_missing) then
      value = default
      status = zon_ok
    end if
    call finish(self, path, status, stat)
  end subroutine

  subroutine get_string(self, path, value, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    character(len=:), allocatable, intent(inout) :: value
    character(len=*), intent(in), optional :: default
    integer, intent(out), optional :: stat
    type(c_ptr) :: found
    integer(c_int) :: status
    status = zonxGetString(handle_of(self), c_path(path), found)
    if (status == zon_ok) value = text_of(found)
    if (present(default) .and. status == zon_missing) then
      value = default
      status = zon_ok
    end if
    call finish(self, path, status, stat)
  end subroutine

  subroutine get_fixed(self, path, value, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    character(len=*), intent(inout) :: value
    character(len=*), intent(in), optional :: default
    integer, intent(out), optional :: stat
    character(len=:), allocatable :: text
    character(len=20) :: room
    type(c_ptr) :: found
    integer(c_int) :: status
    status = zonxGetString(handle_of(self), c_path(path), found)
    if (status == zon_ok) text = text_of(found)
    if (present(default) .and. status == zon_missing) then
      text = default
      status = zon_ok
    end if
    if (status == zon_ok) then
      if (len_trim(text) > len(value)) then
        write (room, '(i0)') len(value)
        call self%report(path, 'the text is longer than ' // trim(room) // ' characters', stat=stat)
        return
      end if
      value = text
    end if
    call finish(self, path, status, stat)
  end subroutine

  subroutine get_filename(self, path, value, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    character(len=:), allocatable, intent(inout) :: value
    character(len=*), intent(in), optional :: default
    integer, intent(out), optional :: stat
    type(c_ptr) :: found
    integer(c_int) :: status
    status = zonxGetFilename(handle_of(self), c_path(path), found)
    if (status == zon_ok) value = text_of(found)
    if (present(default) .and. status == zon_missing) then
      value = default
      status = zon_ok
    end if
    call finish(self, path, status, stat)
  end subroutine

  subroutine get_text(self, path, value, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    character(len=:), allocatable, intent(inout) :: value
    integer, intent(out), optional :: stat
    type(c_ptr) :: found
    integer(c_int) :: status
    status = zonxGetText(handle_of(self), c_path(path), found)
    if (status == zon_ok) value = text_of(found)
    call finish(self, path, status, stat)
  end subroutine

  ! Lists. The first call has room for most; a longer list needs a second one. `count` is the number of the
  ! value that cannot be read.

  subroutine get_int32s(self, path, values, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    integer(int32), allocatable, intent(inout) :: values(:)
    integer(int32), intent(in), optional :: default(:)
    integer, intent(out), optional :: stat
    integer(c_int), allocatable :: found(:)
    integer(c_size_t) :: count
    integer(c_int) :: status
    count = first_room
    do
      allocate (found(count))
      status = zonxGetInts(handle_of(self), c_path(path), found, size(found, kind=c_size_t), count)
      if (status /= zon_ok .or. count <= size(found)) exit
      deallocate (found)
    end do
    if (status == zon_ok) values = found(:count)
    if (takes_default(self, path, status, present(default))) then
      values = default
      status = zon_ok
    end if
    call finish_list(self, path, status, count, stat)
  end subroutine

  subroutine get_int64s(self, path, values, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    integer(int64), allocatable, intent(inout) :: values(:)
    integer(int64), intent(in), optional :: default(:)
    integer, intent(out), optional :: stat
    integer(c_long_long), allocatable :: found(:)
    integer(c_size_t) :: count
    integer(c_int) :: status
    count = first_room
    do
      allocate (found(count))
      status = zonxGetInt64s(handle_of(self), c_path(path), found, size(found, kind=c_size_t), count)
      if (status /= zon_ok .or. count <= size(found)) exit
      deallocate (found)
    end do
    if (status == zon_ok) values = found(:count)
    if (takes_default(self, path, status, present(default))) then
      values = default
      status = zon_ok
    end if
    call finish_list(self, path, status, count, stat)
  end subroutine

  subroutine get_real64s(self, path, values, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    real(real64), allocatable, intent(inout) :: values(:)
    real(real64), intent(in), optional :: default(:)
    integer, intent(out), optional :: stat
    integer(c_size_t) :: count
    integer(c_int) :: status
    real(c_double), allocatable :: found(:)
    call find_reals(self, path, found, count, status)
    if (status == zon_ok) call move_alloc(found, values)
    if (takes_default(self, path, status, present(default))) then
      values = default
      status = zon_ok
    end if
    call finish_list(self, path, status, count, stat)
  end subroutine

  subroutine get_real32s(self, path, values, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    real(real32), allocatable, intent(inout) :: values(:)
    real(real32), intent(in), optional :: default(:)
    integer, intent(out), optional :: stat
    integer(c_size_t) :: count, i
    integer(c_int) :: status
    real(c_double), allocatable :: found(:)
    call find_reals(self, path, found, count, status)
    do i = 1, merge(count, 0_c_size_t, status == zon_ok)
      if (abs(found(i)) < beyond_real32) cycle
      status = zon_out_of_range
      count = i
      exit
    end do
    if (status == zon_ok) values = real(found, real32)
    if (takes_default(self, path, status, present(default))) then
      values = default
      status = zon_ok
    end if
    call finish_list(self, path, status, count, stat)
  end subroutine

  subroutine find_reals(self, path, found, count, status)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    real(c_double), allocatable, intent(out) :: found(:)
    integer(c_size_t), intent(out) :: count
    integer(c_int), intent(out) :: status
    count = first_room
    do
      allocate (found(count))
      status = zonxGetDoubles(handle_of(self), c_path(path), found, size(found, kind=c_size_t), count)
      if (status /= zon_ok .or. count <= size(found)) exit
      deallocate (found)
    end do
    if (status == zon_ok) found = found(:count)
  end subroutine

  subroutine get_logicals(self, path, values, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    logical, allocatable, intent(inout) :: values(:)
    logical, intent(in), optional :: default(:)
    integer, intent(out), optional :: stat
    integer(c_int), allocatable :: found(:)
    integer(c_size_t) :: count
    integer(c_int) :: status
    count = first_room
    do
      allocate (found(count))
      status = zonxGetBools(handle_of(self), c_path(path), found, size(found, kind=c_size_t), count)
      if (status /= zon_ok .or. count <= size(found)) exit
      deallocate (found)
    end do
    if (status == zon_ok) values = found(:count) /= 0
    if (takes_default(self, path, status, present(default))) then
      values = default
      status = zon_ok
    end if
    call finish_list(self, path, status, count, stat)
  end subroutine

  subroutine get_strings(self, path, values, default, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    character(len=:), allocatable, intent(inout) :: values(:)
    character(len=*), intent(in), optional :: default(:)
    integer, intent(out), optional :: stat
    type(c_ptr), allocatable :: found(:)
    integer(c_size_t) :: count
    integer(c_int) :: status
    count = first_room
    do
      allocate (found(count))
      status = zonxGetStrings(handle_of(self), c_path(path), found, size(found, kind=c_size_t), count)
      if (status /= zon_ok .or. count <= size(found)) exit
      deallocate (found)
    end do
    if (status == zon_ok) call copy_texts(found(:count), values)
    if (takes_default(self, path, status, present(default))) then
      call copy_array(default, values)
      status = zon_ok
    end if
    call finish_list(self, path, status, count, stat)
  end subroutine

  ! An assignment, without the errors of some compilers in those of deferred length.
  subroutine copy_array(from, to)
    character(len=*), intent(in) :: from(:)
    character(len=:), allocatable, intent(inout) :: to(:)
    character(len=len(from)) :: copy(size(from))
    copy = from
    if (allocated(to)) deallocate (to)
    allocate (character(len=len(copy)) :: to(size(copy)))
    to(:) = copy
  end subroutine

  ! A default is not for a list that has an empty place among its values.
  logical function takes_default(self, path, status, has_default)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    integer(c_int), intent(in) :: status
    logical, intent(in) :: has_default
    takes_default = has_default .and. status == zon_missing
    if (takes_default) takes_default = .not. self%has(path_of_value(path, 2_c_size_t))
  end function

  ! `count` is first_room if the keyword itself was not found.
  subroutine finish_list(self, path, status, count, stat)
    class(zon_file), intent(in) :: self
    character(len=*), intent(in) :: path
    integer(c_int), intent(in) :: status
    integer(c_size_t), intent(in) :: count
    integer, intent(out), optional :: stat
    character(len=:), allocatable :: place
    place = trim(path)
    if (status /= zon_ok) then
      if (self%has(path_of_value(path, count))) place = path_of_value(path, count)
    end if
    call finish(self, place, status, stat)
  end subroutine

  ! ---- Changing -------------------------------------------------------------------------------------------

  subroutine set_int32(self, path, value, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path
    integer(int32), intent(in) :: value
    integer, intent(out), optional :: stat
    call finish(self, path, zonxSetInt64(handle_of(self), c_path(path), int(value, c_long_long)), stat)
  end subroutine

  subroutine set_int64(self, path, value, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path
    integer(int64), intent(in) :: value
    integer, intent(out), optional :: stat
    call finish(self, path, zonxSetInt64(handle_of(self), c_path(path), int(value, c_long_long)), stat)
  end subroutine

  subroutine set_real64(self, path, value, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path
    real(real64), intent(in) :: value
    integer, intent(out), optional :: stat
    call finish(self, path, zonxSetDouble(handle_of(self), c_path(path), value), stat)
  end subroutine

  subroutine set_real32(self, path, value, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path
    real(real32), intent(in) :: value
    integer, intent(out), optional :: stat
    call finish(self, path, zonxSetDouble(handle_of(self), c_path(path), widened(value)), stat)
  end subroutine

  subroutine set_logical(self, path, value, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path
    logical, intent(in) :: value
    integer, intent(out), optional :: stat
    call finish(self, path, zonxSetBool(handle_of(self), c_path(path), merge(1_c_int, 0_c_int, value)), stat)
  end subroutine

  subroutine set_string(self, path, value, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path, value
    integer, intent(out), optional :: stat
    if (has_zero(value)) then
      call finish(self, path, bad_argument, stat, zero_byte)
    else
      call finish(self, path, zonxSetString(handle_of(self), c_path(path), value // c_null_char), stat)
    end if
  end subroutine

  subroutine set_filename(self, path, value, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path, value
    integer, intent(out), optional :: stat
    if (has_zero(value)) then
      call finish(self, path, bad_argument, stat, zero_byte)
    else
      call finish(self, path, zonxSetFilename(handle_of(self), c_path(path), trim(value) // c_null_char), stat)
    end if
  end subroutine

  subroutine set_text(self, path, text, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path, text
    integer, intent(out), optional :: stat
    integer(c_int) :: status
    if (has_zero(text)) then
      call finish(self, path, bad_argument, stat, zero_byte)
      return
    end if
    status = zonxSetText(handle_of(self), c_path(path), text // c_null_char)
    call finish(self, path, status, stat)
  end subroutine

  subroutine set_int32s(self, path, values, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path
    integer(int32), intent(in) :: values(:)
    integer, intent(out), optional :: stat
    call self%set_int64s(path, int(values, int64), stat)
  end subroutine

  subroutine set_int64s(self, path, values, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path
    integer(int64), intent(in) :: values(:)
    integer, intent(out), optional :: stat
    call finish(self, path, zonxSetInt64s(handle_of(self), c_path(path), int(values, c_long_long), &
      size(values, kind=c_size_t)), stat)
  end subroutine

  subroutine set_real64s(self, path, values, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path
    real(real64), intent(in) :: values(:)
    integer, intent(out), optional :: stat
    call finish(self, path, zonxSetDoubles(handle_of(self), c_path(path), values, &
      size(values, kind=c_size_t)), stat)
  end subroutine

  subroutine set_real32s(self, path, values, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path
    real(real32), intent(in) :: values(:)
    integer, intent(out), optional :: stat
    call self%set_real64s(path, widened(values), stat)
  end subroutine

  subroutine set_logicals(self, path, values, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path
    logical, intent(in) :: values(:)
    integer, intent(out), optional :: stat
    call finish(self, path, zonxSetBools(handle_of(self), c_path(path), merge(1_c_int, 0_c_int, values), &
      size(values, kind=c_size_t)), stat)
  end subroutine

  subroutine set_strings(self, path, values, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path
    character(len=*), intent(in) :: values(:)
    integer, intent(out), optional :: stat
    character(kind=c_char), allocatable, target :: letters(:, :)
    type(c_ptr), allocatable :: pointers(:)
    integer :: n, i
    allocate (letters(len(values) + 1, size(values)), pointers(size(values)))
    letters = c_null_char
    do n = 1, size(values)
      if (has_zero(values(n))) then
        call finish(self, path, bad_argument, stat, zero_byte)
        return
      end if
      do i = 1, len_trim(values(n))
        letters(i, n) = values(n)(i:i)
      end do
      pointers(n) = c_loc(letters(1, n))
    end do
    call finish(self, path, zonxSetStrings(handle_of(self), c_path(path), pointers, &
      size(values, kind=c_size_t)), stat)
  end subroutine

  ! A number that is written with as few digits as a real(4) needs, so that 0.1 does not become
  ! 0.10000000149011612. Six digits always survive in a real(4), nine are always enough.
  impure elemental real(real64) function widened(value)
    real(real32), intent(in) :: value
    character(len=*), parameter :: forms(6:9) = ['(es20.5e3)', '(es20.6e3)', '(es20.7e3)', '(es20.8e3)']
    character(len=20) :: text
    integer :: digits
    widened = real(value, real64)
    if (.not. ieee_is_finite(value)) return
    do digits = 6, 9
      write (text, forms(digits)) value
      read (text, *) widened
      if (abs(real(widened, real32) - value) <= 0) return
    end do
  end function

  subroutine remove(self, path, stat)
    class(zon_file), intent(inout) :: self
    character(len=*), intent(in) :: path
    integer, intent(out), optional :: stat
    call finish(self, path, zonxRemove(handle_of(self), c_path(path)), stat)
  end subroutine
end module
