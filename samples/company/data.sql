-- What is in the tables of the sample company, for every engine. (The embedded one gets it without the N that
-- texts beyond ASCII have.) On SQL Server it needs the session of 1_tables.sql, whose DATEFORMAT it counts on.

INSERT INTO Setup (CompanyName, OpeningDate)
VALUES ('Shree Ganesh Distributors, Pune', '2008-04-01');

INSERT INTO ColorSettings (ItemName, BackColor, ForeColor)
VALUES
  ('Screen', 15917529, 8388608),
  ('Caption', 15917529, 8388608),
  ('Input', 16777215, -2147483640),
  ('Grid', 16777215, -2147483640),
  ('Heading', 13603685, 16777215),
  ('Total', 14745599, 8388608);

INSERT INTO Customer (CustomerID, CustomerName, Address, City, Phone, CreditDays)
VALUES
  ('C001', 'Aggarwal General Stores', '12 Laxmi Road', 'Pune', '020-24451201', 21),
  ('C002', 'Balaji Provision', '4/5 Tilak Road', 'Pune', '020-24337788', 14),
  ('C003', 'Chauhan & Sons', 'Shop 9, Market Yard', 'Pune', '020-24261190', 21),
  ('C004', 'Deepak Kirana Bhandar', '77 Karve Road', 'Pune', '020-25439012', 7),
  ('C005', 'Everest Super Market', '1 Camp, M. G. Road', 'Pune', '020-26130044', 30),
  ('C006', 'Fernandes & Cia', N'18 Rua de Ourém', 'Panjim', '0832-2225567', 30),
  ('C007', 'Ganesh Medical & General', '203 Sinhagad Road', 'Pune', '020-24251133', 14),
  ('C008', 'Hari Om Traders', '56 Nana Peth', 'Pune', '020-26353321', 21),
  ('C009', 'Indira Cooperative Store', 'Sector 21, Nigdi', 'Pimpri', '020-27654400', 45),
  ('C010', 'Jain Brothers', '31 Ravivar Peth', 'Pune', '020-24457612', 21),
  ('C011', 'Kulkarni Bazaar', '8 Kothrud Depot', 'Pune', '020-25389917', 14),
  ('C012', 'Laxmi Stores', '90 Bhavani Peth', 'Pune', '020-26384150', 7),
  ('C013', 'Mahalaxmi Agencies', '5 Station Road', 'Kolhapur', '0231-2654127', 30),
  ('C014', 'New Bombay Stores', '40 F. C. Road', 'Pune', '020-25653098', 21),
  ('C015', 'Om Sai Kirana', '22 Hadapsar Gaon', 'Pune', '020-26872245', 7),
  ('C016', 'Patil & Company', '3 Shivaji Chowk', 'Satara', '02162-234410', 30),
  ('C017', 'Quality Departmental', '11 Aundh Road', 'Pune', '020-25884422', 30),
  ('C018', 'Rajesh Trading Co.', '66 Guruwar Peth', 'Pune', '020-24476534', 21),
  ('C019', 'Shah Wholesale', '17 Timber Market', 'Pune', '020-24268890', 30),
  ('C020', 'Thakkar & Thakkar', '2 Mangalwar Peth', 'Pune', '020-26120937', 21),
  ('C021', 'Usha Novelties', '14 Deccan Gymkhana', 'Pune', '020-25536612', 14),
  ('C022', 'Vijay Stores', '38 Chinchwad Gaon', 'Pimpri', '020-27451908', 14),
  ('C023', 'Walia Provision', '6 Wanowrie Bazaar', 'Pune', '020-26851774', 21),
  ('C024', 'Xavier D''Souza & Bros', N'29 Av. São João', 'Margao', '0834-2715533', 30),
  ('C025', 'Yashwant Bhandar', '45 Bibwewadi', 'Pune', '020-24219966', 7),
  ('C026', 'Zaveri Super Shoppe', '10 Koregaon Park', 'Pune', '020-26151002', 30),
  ('C027', N'Milk Parlour – Swargate', 'Bus Stand, Swargate', 'Pune', '020-24441818', 7),
  ('C028', 'Bharat Cold Storage', '7 Gultekdi', 'Pune', '020-24273456', 30),
  ('C029', N'Café Sunrise', 'Deccan Chowk', 'Pune', '020-25676900', 14),
  ('C030', 'Irani & Co.', '3 Moledina Road', 'Pune', '020-26132222', 30),
  ('C031', 'Ekta Mahila Bachat Gat', '19 Yerwada', 'Pune', '020-26686140', 45),
  ('C032', 'Friends Corner', '51 Viman Nagar', 'Pune', '020-26633781', 14),
  ('C033', 'Gurukripa Traders', '27 Solapur Road', 'Baramati', '02112-224455', 30),
  ('C034', N'Hotel Crème', '88 Baner Road', 'Pune', '020-27293344', 14),
  ('C035', 'Inamdar & Associates', '16 Kondhwa', 'Pune', '020-26932710', 21),
  ('C036', 'Joshi Sweet Mart', '1 Sadashiv Peth', 'Pune', '020-24471199', 7),
  ('C037', 'Krishna Dairy', '64 Warje', 'Pune', '020-25230087', 7),
  ('C038', 'Lucky Stores', '12 Wakad', 'Pimpri', '020-27274561', 14),
  ('C039', N'Müller Bäckerei', '5 North Main Road', 'Pune', '020-26158833', 30),
  ('C040', 'Navjeevan Traders', '73 Phaltan Road', 'Baramati', '02112-223390', 30);

INSERT INTO Vendors (VendorID, VendorName, ContactPerson, Address, Phone, Locality, SaleType)
VALUES
  ('V01', 'Sagar Consumer Products Ltd', 'R. Menon', 'Andheri East, Mumbai', '022-28204455', 2, 1),
  ('V02', 'Nirmal Soaps & Detergents', 'K. Patel', 'Naroda, Ahmedabad', '079-22812233', 2, 1),
  ('V03', 'Peshwa Foods', 'S. Apte', 'Bajirao Road, Pune', '020-24471020', 1, 1),
  ('V04', 'Golden Sheaf Biscuits', 'A. Deshpande', 'Bhosari, Pune', '020-27120909', 1, 1),
  ('V05', 'Godavari Sugar Mills', 'P. Jadhav', 'Sakarwadi', '02423-279321', 2, 2),
  ('V06', 'Coastal Salt Depot', 'M. Irani', 'Kurla, Mumbai', '022-25228790', 2, 2),
  ('V07', 'Red Chilli Spices', 'V. Chopda', 'Hadapsar, Pune', '020-26872120', 1, 1),
  ('V08', 'Lakeside Dairy', 'D. More', 'Katraj, Pune', '020-24370151', 1, 1),
  ('V09', 'Hilltop Fruits', 'N. Vora', 'Panchgani', '02168-240112', 2, 1),
  ('V10', 'Northern Home Care', 'J. Fernandes', 'Gurgaon', '0124-4028000', 2, 2),
  ('V11', 'Desai Tea Company', 'H. Desai', 'Bhavani Peth, Pune', '020-26384411', 1, 2),
  ('V12', 'Malabar Coffee & Co.', 'T. Kurian', 'Kozhikode', '0495-2722266', 2, 1),
  ('V13', 'Sahyadri Oil Mills', 'B. Shinde', 'Sangli', '0233-2672345', 2, 2),
  ('V14', 'Pune Paper Products', 'G. Agarwal', 'Market Yard, Pune', '020-24266001', 1, 2),
  ('V15', 'Champak Cosmetics', 'L. Roy', 'Kolkata', '033-22291177', 2, 1),
  ('V16', 'Long Day Cells', 'C. Nair', 'Chennai', '044-28130550', 2, 2),
  ('V17', 'Mandovi Dairy Foods', 'W. D''Costa', 'Ponda, Goa', '0832-2312200', 2, 1),
  ('V18', 'Apte Pickles & Sons', 'A. Apte', 'Girgaon, Mumbai', '022-23803344', 2, 1),
  ('V19', 'Mula Packaging', 'S. Joshi', 'Karve Nagar, Pune', '020-25446677', 1, 2),
  ('V20', 'Laxmi Rice Mill', 'O. Gupta', 'Nagpur', '0712-2765432', 2, 2),
  ('V21', 'Sharbat Beverages', 'I. Shah', 'Ahmedabad', '079-26575001', 2, 1),
  ('V22', N'Crème & Crust Bakery', 'F. Irani', 'Camp, Pune', '020-26130808', 1, 1),
  ('V23', 'Sparkle Matches', 'E. Rajan', 'Sivakasi', '04562-220134', 2, 2),
  ('V24', 'Tulsi Herbal', 'Y. Pendharkar', 'Dombivli', '0251-2430101', 2, 1),
  ('V25', 'Universal Stationers', 'Z. Contractor', 'Budhwar Peth, Pune', '020-24452020', 1, 2);

INSERT INTO VendorAccount (VendorID, AccountName)
SELECT VendorID, VendorName FROM Vendors;

INSERT INTO BankMaster (BankCode, BankName)
VALUES
  ('BSH', 'Bank of Sahyadri'),
  ('CCB', 'Citizens Co-operative Bank'),
  ('UBD', 'Union Bank of the Deccan');

INSERT INTO BranchMaster (BankCode, BranchCode, BranchName)
VALUES
  ('BSH', 'BSH001', 'Shivajinagar'),
  ('BSH', 'BSH002', 'Deccan Gymkhana'),
  ('CCB', 'CCB001', 'Laxmi Road'),
  ('UBD', 'UBD001', 'Pune Main'),
  ('UBD', 'UBD002', 'Pimpri');

INSERT INTO tbl_velk_configabstract (ScreenCode, ScreenName, flag)
VALUES ('OCGDS', 'OperationalCategoryGroup', 'GR1');

INSERT INTO Salesman (Salesman_name, Address, ResidentialNUmber, MobileNumber)
VALUES
  ('Anil Kamble', '14 Ganesh Peth, Pune', '020-24450011', '9822011223'),
  ('Bhaskar Rao', '7 Dapodi, Pune', '', '9850123456'),
  ('Dilip Sawant', '9 Kasba Peth, Pune', '020-24478800', '9890554433'),
  ('Ganpat Shelar', '22 Dhankawadi, Pune', '', ''),
  ('Joseph D''Silva', '3 Fatima Nagar, Pune', '020-26811717', '9823098230'),
  ('Kiran Pawar', '51 Chinchwad', '020-27453311', '9960112233'),
  ('Mangesh Gaikwad', '18 Hadapsar, Pune', '', '9881234509'),
  (N'Noël Pinto', '5 Khadki Bazaar, Pune', '020-25812299', '9822334455');

INSERT INTO DSType_Master (DSTypeName, DSTypeValue, DSTypeCtlPos, Active, OCGtype, IsDefault)
VALUES
  ('DSType', 'Retail', 1, 1, 'GR1', 1),
  ('DSType', 'Wholesale', 1, 1, 'GR1', 1),
  ('DSType', 'Rural', 1, 1, 'GR1', 1),
  ('DSType', 'Van Sales', 1, 1, 'GR1', 0),
  ('DSType', 'Institution', 1, 0, 'GR1', 1),
  ('DSType', 'Export', 1, 1, 'GR2', 1),
  ('HandHeld DS', 'YES', 2, 1, 'GR1', 1),
  ('HandHeld DS', 'NO', 2, 1, 'GR1', 1);

-- By names: which numbers the rows above were given is the engine's choice.
INSERT INTO DStype_Details (SalesmanID, DSTypeID)
SELECT SalesmanID, DSTypeID FROM Salesman, DSType_Master
WHERE (Salesman_name = 'Anil Kamble' AND DSTypeValue IN ('Retail', 'YES'))
  OR (Salesman_name = 'Bhaskar Rao' AND DSTypeValue IN ('Wholesale', 'NO'))
  OR (Salesman_name = 'Dilip Sawant' AND DSTypeValue = 'Retail')
  OR (Salesman_name = 'Ganpat Shelar' AND DSTypeValue = 'Rural')
  OR (Salesman_name = 'Joseph D''Silva' AND DSTypeValue IN ('Wholesale', 'YES'))
  OR (Salesman_name = 'Kiran Pawar' AND DSTypeValue IN ('Retail', 'NO'))
  OR (Salesman_name = N'Noël Pinto' AND DSTypeValue = 'Rural');
