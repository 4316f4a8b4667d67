! A host in Fortran: loads the settings of a run, changes two values and saves the file with its comments:
!
!     run FILE
!
! An error of the file stops the program with a report. The errors of the host's own are only printed.
program run
  use zon
  implicit none
  integer, parameter :: wide = kind(1d0)
  type(zon_file) :: file
  character(len=1000) :: name
  character(len=:), allocatable :: title, quay
  integer :: step, threads, n, stat
  real(wide) :: length
  real(wide), allocatable :: tolerances(:)

  call get_command_argument(1, name)
  call file%load(name)
  call file%get('Run/Title', title, default='untitled')
  call file%get('Run/Step', step, default=30)
  call file%get('Run/Threads', threads, default=4)  ! the file has none
  call file%get('Run/Tolerance', tolerances)
  print '(a)', title
  print '(a, i0, a, i0, a)', 'step ', step, ' s, ', threads, ' threads'
  print '(i0, a, f6.4)', size(tolerances), ' tolerances, the first ', tolerances(1)

  do n = 1, file%count('Quay')
    quay = zon_nth('Quay', n)
    call file%get(quay // '/Name', title)
    call file%get(quay // '/Length', length)
    print '(2a, f0.1, a)', title, ': ', length, ' m'
    if (length > 200) then
      call file%report(quay // '/Length', 'longer than 200 m', stat=stat)
      print '(a)', file%errmsg()
    end if
  end do

  call file%set('Run/Step', step / 2)
  call file%set('Quay:2/Length', 98.25_wide)
  call file%save()
end program
