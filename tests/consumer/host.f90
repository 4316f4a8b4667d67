! A host in Fortran.
program host
  use iso_c_binding
  implicit none
  interface
    function zonLoadFile(name, quiet) bind(C, name="zonLoadFile")
      import
      type(c_ptr) :: zonLoadFile
      character(kind=c_char), intent(in) :: name(*)
      integer(c_int), value :: quiet
    end function
    function zonFindSectionByHandle(file, path) bind(C, name="zonFindSectionByHandle")
      import
      type(c_ptr) :: zonFindSectionByHandle
      type(c_ptr), value :: file
      character(kind=c_char), intent(in) :: path(*)
    end function
    function zonKeywordByNameNum(section, name, n) bind(C, name="zonKeywordByNameNum")
      import
      type(c_ptr) :: zonKeywordByNameNum
      type(c_ptr), value :: section
      character(kind=c_char), intent(in) :: name(*)
      integer(c_int), value :: n
    end function
    function zonParamByNum(keyword, n) bind(C, name="zonParamByNum")
      import
      type(c_ptr) :: zonParamByNum
      type(c_ptr), value :: keyword
      integer(c_int), value :: n
    end function
    integer(c_int) function zonGetInt(node) bind(C, name="zonGetInt")
      import
      type(c_ptr), value :: node
    end function
    real(c_double) function zonGetDouble(node) bind(C, name="zonGetDouble")
      import
      type(c_ptr), value :: node
    end function
    integer(c_int) function zonGetString2(node, buffer, size) bind(C, name="zonGetString2")
      import
      type(c_ptr), value :: node
      character(kind=c_char), intent(out) :: buffer(*)
      integer(c_int), value :: size
    end function
    integer(c_int) function zonGetFilename2(node, buffer, size) bind(C, name="zonGetFilename2")
      import
      type(c_ptr), value :: node
      character(kind=c_char), intent(out) :: buffer(*)
      integer(c_int), value :: size
    end function
    function zonGetSyntaxErr(file, line, position, message) bind(C, name="zonGetSyntaxErr")
      import
      type(c_ptr) :: zonGetSyntaxErr
      type(c_ptr), value :: file
      integer(c_int), intent(out) :: line, position
      type(c_ptr), intent(out) :: message
    end function
    integer(c_size_t) function strlen(text) bind(C, name="strlen")
      import
      type(c_ptr), value :: text
    end function
    subroutine zonClose(file) bind(C, name="zonClose")
      import
      type(c_ptr), intent(inout) :: file
    end subroutine
  end interface

  character(4096) :: text
  character(kind=c_char), pointer :: letters(:)
  type(c_ptr) :: file, message
  integer(c_int) :: line, position, status

  call get_command_argument(1, text)
  file = zonLoadFile(trim(text)//c_null_char, 1)
  if (.not. c_associated(file)) stop 1
  print '(I0)', zonGetInt(value_of("Harbour", "Basins"))
  print '(F0.2)', zonGetDouble(value_of("Quay:2", "Length"))
  status = zonGetString2(value_of("Quay:2/Berth", "Foreman"), text, len(text))
  print '(A)', text(:index(text, c_null_char) - 1)
  status = zonGetFilename2(value_of("Traffic/Ship", "Papers"), text, len(text))
  print '(A)', text(:index(text, c_null_char) - 1)
  call zonClose(file)

  call get_command_argument(2, text)
  file = zonLoadFile(trim(text)//c_null_char, 1)
  message = zonGetSyntaxErr(file, line, position, message)
  call c_f_pointer(message, letters, [strlen(message)])
  print '(I0, ":", I0, ": ", *(A))', line, position, letters
  call zonClose(file)

contains
  type(c_ptr) function value_of(section, keyword)
    character(*), intent(in) :: section, keyword
    value_of = zonParamByNum(zonKeywordByNameNum( &
      zonFindSectionByHandle(file, section//c_null_char), keyword//c_null_char, 1), 1)
  end function
end program
