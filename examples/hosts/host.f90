! A host in Fortran.
program host
  use iso_c_binding
  implicit none
  interface
    type(c_ptr) function load(name, quiet) bind(C, name="zonLoadFile")
      import; character(kind=c_char), intent(in) :: name(*); integer(c_int), value :: quiet
    end function
    type(c_ptr) function find(file, path) bind(C, name="zonFindSectionByHandle")
      import; type(c_ptr), value :: file; character(kind=c_char), intent(in) :: path(*)
    end function
    type(c_ptr) function keyword(section, name, n) bind(C, name="zonKeywordByNameNum")
      import; type(c_ptr), value :: section; character(kind=c_char), intent(in) :: name(*)
      integer(c_int), value :: n
    end function
    type(c_ptr) function nth(node, n) bind(C, name="zonParamByNum")
      import; type(c_ptr), value :: node; integer(c_int), value :: n
    end function
    integer(c_int) function whole(node) bind(C, name="zonGetInt")
      import; type(c_ptr), value :: node
    end function
    real(c_double) function real_of(node) bind(C, name="zonGetDouble")
      import; type(c_ptr), value :: node
    end function
    type(c_ptr) function string_of(node) bind(C, name="zonGetString")
      import; type(c_ptr), value :: node
    end function
    type(c_ptr) function path_of(node) bind(C, name="zonGetFilename")
      import; type(c_ptr), value :: node
    end function
    type(c_ptr) function error_of(file, line, position, message) bind(C, name="zonGetSyntaxErr")
      import; type(c_ptr), value :: file, message; integer(c_int), intent(out) :: line, position
    end function
    integer(c_size_t) function strlen(text) bind(C)
      import; type(c_ptr), value :: text
    end function
    subroutine close_file(file) bind(C, name="zonClose")
      import; type(c_ptr), intent(inout) :: file
    end subroutine
  end interface

  character(4096) :: name
  type(c_ptr) :: file, message
  integer(c_int) :: line, position

  call get_command_argument(1, name)
  file = load(trim(name)//c_null_char, 1)
  print '(I0)', whole(value_of("Harbour", "Basins"))
  print '(F0.2)', real_of(value_of("Quay:2", "Length"))
  print '(*(A))', letters(string_of(value_of("Quay:2/Berth", "Foreman")))
  print '(*(A))', letters(path_of(value_of("Traffic/Ship", "Papers")))
  call close_file(file)

  call get_command_argument(2, name)
  file = load(trim(name)//c_null_char, 1)
  message = error_of(file, line, position, c_null_ptr)
  print '(I0, ":", I0, ": ", *(A))', line, position, letters(message)
  call close_file(file)

contains
  type(c_ptr) function value_of(section, name)
    character(*), intent(in) :: section, name
    value_of = nth(keyword(find(file, section//c_null_char), name//c_null_char, 1), 1)
  end function

  function letters(text)
    type(c_ptr), intent(in) :: text
    character(kind=c_char), pointer :: letters(:)
    call c_f_pointer(text, letters, [strlen(text)])
  end function
end program
