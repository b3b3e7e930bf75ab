! Isothermal flash of a natural gas with ten components.
!
! Compile and run from the root of the project, after ./dev build:
!   gfortran examples/fortran/flash.f90 -L build/release/lib -ltalix -Wl,-rpath,$PWD/build/release/lib -o flash
!   ./flash build/release/share/talix
!
! The argument is the install directory; without it the variable TALIX_HOME is used.

! The calls of the library. Lengths of texts follow their texts by value.
module talix_calls
  use, intrinsic :: iso_c_binding, only: c_char, c_float, c_int32_t
  implicit none

  interface
    subroutine TALIX(NC, T, P, FRV, UNIT, UNIT_LENGTH, IFLASH, SCAL, TPROPS, STR, STR_LENGTH) &
        bind(C, name="TALIX")
      import :: c_char, c_float, c_int32_t
      integer(c_int32_t), intent(in) :: NC, IFLASH
      real(c_float), intent(inout) :: T, P, FRV
      character(kind=c_char), intent(inout) :: UNIT(*)
      integer(c_int32_t), value :: UNIT_LENGTH, STR_LENGTH
      real(c_float), intent(inout) :: SCAL(52, 8), TPROPS(15, 3)
      character(kind=c_char), intent(inout) :: STR(*)
    end subroutine TALIX

    subroutine SETTALIXINSTALL(PATH, PATH_LENGTH, LEN) bind(C, name="SETTALIXINSTALL")
      import :: c_char, c_int32_t
      character(kind=c_char), intent(in) :: PATH(*)
      integer(c_int32_t), value :: PATH_LENGTH
      integer(c_int32_t), intent(in) :: LEN
    end subroutine SETTALIXINSTALL

    subroutine SETTALIXUSAGE(USAGE1, MSGHOOK, MSGUNIT) bind(C, name="SETTALIXUSAGE")
      import :: c_int32_t
      integer(c_int32_t), intent(in) :: USAGE1, MSGHOOK, MSGUNIT
    end subroutine SETTALIXUSAGE

    subroutine GETTALIXPROPSID(ID, CRITT, CRITP, MOLWT, APBPT, FRZPT, HEATC, PNAME, PNAME_LENGTH, STATUS) &
        bind(C, name="GETTALIXPROPSID")
      import :: c_char, c_float, c_int32_t
      integer(c_int32_t), intent(in) :: ID
      real(c_float), intent(out) :: CRITT, CRITP, MOLWT, APBPT, FRZPT, HEATC
      character(kind=c_char), intent(inout) :: PNAME(*)
      integer(c_int32_t), value :: PNAME_LENGTH
      integer(c_int32_t), intent(out) :: STATUS
    end subroutine GETTALIXPROPSID
  end interface
end module talix_calls

program flash
  use talix_calls
  implicit none
  integer(c_int32_t), parameter :: n = 10
  integer, parameter :: numbers(n) = [15, 4, 20, 21, 22, 24, 23, 25, 28, 116]
  real(c_float), parameter :: feed(n) = [0.020, 0.015, 0.840, 0.060, 0.030, 0.007, 0.010, 0.006, 0.007, 0.005]
  character(len=27), parameter :: properties(15) = [character(len=27) :: &
    'molar mass, g/mol', 'density, kg/m3', 'compressibility, 1/bar', 'ideal-gas enthalpy, J/mol', &
    'ideal-gas entropy, J/mol/K', 'ideal-gas cp, J/mol/K', 'enthalpy, J/mol', 'entropy, J/mol/K', 'cv, J/g/K', &
    'cp, J/g/K', 'speed of sound, m/s', 'Joule-Thomson, K/bar', 'viscosity, mPa s', 'conductivity, W/m/K', &
    'surface tension, mN/m']
  real(c_float) :: T = -20.0, P = 40.0, FRV = 1.0, SCAL(52, 8) = 0.0, TPROPS(15, 3) = 0.0, constants(6)
  character(len=1) :: UNIT = 'M'
  character(len=120) :: STR
  character(len=256) :: install
  character(len=28) :: name
  integer(c_int32_t) :: status
  integer :: i

  call get_command_argument(1, install)
  if (install == ' ') call get_environment_variable('TALIX_HOME', install)
  if (install == ' ') error stop 'usage: flash INSTALL_DIRECTORY'
  call SETTALIXINSTALL(install, int(len(install), c_int32_t), int(len_trim(install), c_int32_t))
  call SETTALIXUSAGE(0, 0, -1)

  SCAL(1:n, 1) = real(numbers, c_float)
  SCAL(1:n, 2) = feed
  call TALIX(n, T, P, FRV, UNIT, 1, 5, SCAL, TPROPS, STR, int(len(STR), c_int32_t))
  if (STR /= ' ') write (*, '(a)') trim(STR)
  if (STR /= ' ' .and. STR(1:1) /= '.') error stop 1

  write (*, '(a,f7.2,a,f7.2,a,f8.5/)') 'Natural gas at ', T, ' C and ', P, ' bar: vapour fraction ', FRV
  write (*, '(a28,3a13)') 'component', 'feed', 'vapour', 'liquid'
  do i = 1, n
    call GETTALIXPROPSID(int(numbers(i), c_int32_t), constants(1), constants(2), constants(3), constants(4), &
                         constants(5), constants(6), name, 28_c_int32_t, status)
    write (*, '(a28,3f13.6)') name, SCAL(i, 2), SCAL(i, 6), SCAL(i, 7)
  end do
  write (*, '(/a28,13x,2a13)') 'property', 'vapour', 'liquid'
  do i = 1, 15
    write (*, '(a28,13x,2g13.5)') properties(i), TPROPS(i, 1), TPROPS(i, 2)
  end do
end program flash
